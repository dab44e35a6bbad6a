// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/Geometry.h"
#include "support/simulator/QrMatrix.h"

#include <array>
#include <cstdint>
#include <vector>

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
};

/// Maps module coordinates (0, 0 is the code's top left corner, one unit is one module)
/// to pixels.
Homography projectionOf(const CardPose &pose, int codeSize);

/// Where each point of a card lies in its frame.
class CardGeometry
{
public:
    CardGeometry(const CardPose &pose, int codeSize) : m_projection(projectionOf(pose, codeSize)) {}

    /// Module coordinates to pixels.
    Point map(Point module) const { return m_projection.map(module); }

private:
    Homography m_projection;
};

/// The corners of the code as seen, in the order of its own top left, top right, bottom
/// right and bottom left.
std::array<Point, 4> codeCorners(const CardPose &pose, int codeSize);

/// A rectangle of a frame with something laid over it: how much of each pixel is covered,
/// and with how much light (0 to the coverage).
struct Overlay {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<float> coverage;
    std::vector<float> light;
};

/// Renders a sheet of white paper with the code in black on it, and a title and notes in
/// print around it, as far as it lies in the frame, sharp but for the pixel grid.
/// `margin` pixels are kept around the sheet for a blur to spread into.
Overlay renderCard(const QrMatrix &code, const CardPose &pose, int frameWidth, int frameHeight,
                   int margin, std::uint64_t seed, int workers);

} // namespace quillmark::test
