// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/Geometry.h"

#include <array>
#include <optional>

namespace quillmark::test {

/// How a card lies in the frame.
struct CardPose {
    double centreX = 0; ///< of the code, in pixels
    double centreY = 0;
    double modulePixels = 8; ///< side of a module at the code's centre
    double tilt = 0;         ///< degrees, clockwise on the screen
    double perspective = 0;  ///< degrees by which the card leans away from the camera
    double leanTowards = 0;  ///< degrees: the direction in which it recedes
    bool mirrored = false;
    double curl = 0;        ///< degrees by which its surface turns over the code's width
    double curlTowards = 0; ///< degrees: the direction in which it is bent, across the axis
};

/// Radial distortion of a lens, of the lowest order: a point at the radius r from the
/// middle is shown at r (1 + strength (r / reach)^2). Above 0 is a pincushion, below 0 a barrel.
struct LensDistortion {
    Point middle;
    double reach = 1; ///< pixels
    double strength = 0;
};

/// Where each point of a card lies in its picture: a flat sheet, scaled, mirrored and turned;
/// bent to a part of a cylinder; leant away from a camera at a little more than twice the
/// code's width; and seen through a lens.
class CardGeometry
{
public:
    CardGeometry(const CardPose &pose, int codeSize, const LensDistortion &lens = {});

    /// Modules to pixels.
    Point map(Point module) const;

    /// How far a step of one module goes, in pixels: of a step right its x and y, then of a
    /// step down.
    std::array<double, 4> stepsAt(Point module) const;

    /// Pixels to modules, by Newton's method from a guess. Nothing where the card, however
    /// large, is not seen at that place.
    std::optional<Point> find(Point pixel, Point guess) const;

    /// The corners of the code in the order of its own top left, top right, bottom right
    /// and bottom left.
    std::array<Point, 4> codeCorners() const;

private:
    Point m_centre;
    double m_half;
    double m_scaleX, m_scaleY;
    double m_turnCos, m_turnSin;
    double m_curvature; ///< radians a pixel
    double m_curlCos, m_curlSin;
    double m_leanCos, m_leanSin;
    double m_awayCos, m_awaySin;
    double m_distance;
    LensDistortion m_lens;
};

} // namespace quillmark::test
