// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/QrSymbol.h"

#include <array>
#include <optional>
#include <span>

namespace quillmark {

/// A place on a code, in modules from its top left corner, and where it is on a picture.
struct GridKnot {
    PixelPoint module;
    PixelPoint pixel;
    double weight = 1;
};

/// A projection of the plane of a code onto a picture.
class Homography
{
public:
    /// The one that brings every module place nearest to its pixel place (about
    /// least squares on the picture: the linear equations of Hartley and Zisserman, "Multiple View
    /// Geometry", 2nd edition, section 4.1.2, solved again and again with each knot weighted
    /// by the inverse square of the depth it came out at). Nothing for fewer than four
    /// knots or for such as lie on a line.
    static std::optional<Homography> fit(std::span<const GridKnot> knots);

    /// Modules to pixels.
    PixelPoint map(PixelPoint p) const
    {
        const double w = m_m[6] * p.x + m_m[7] * p.y + 1.0;
        return {(m_m[0] * p.x + m_m[1] * p.y + m_m[2]) / w,
                (m_m[3] * p.x + m_m[4] * p.y + m_m[5]) / w};
    }

private:
    std::array<double, 8> m_m{};
};

} // namespace quillmark
