// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/QrSymbol.h"

#include <array>

namespace quillmark {

/// A projection of a plane onto a picture.
class Perspective
{
public:
    /// Maps (0, 0), (side, 0), (side, side) and (0, side) to the corners. The closed form
    /// is Heckbert's ("Fundamentals of texture mapping and image warping", 1989, section
    /// 2.2.3). Where no projection does, what it maps to is not a number.
    static Perspective ofSquare(double side, const SymbolCorners &corners)
    {
        const auto &[a, b, c, d] = corners;
        const double sumX = a.x - b.x + c.x - d.x;
        const double sumY = a.y - b.y + c.y - d.y;
        const double x1 = b.x - c.x;
        const double x2 = d.x - c.x;
        const double y1 = b.y - c.y;
        const double y2 = d.y - c.y;
        const double area = x1 * y2 - x2 * y1;
        const double g = (sumX * y2 - x2 * sumY) / area;
        const double h = (x1 * sumY - sumX * y1) / area;
        Perspective result;
        result.m_m = {(b.x - a.x + g * b.x) / side,
                      (d.x - a.x + h * d.x) / side,
                      a.x,
                      (b.y - a.y + g * b.y) / side,
                      (d.y - a.y + h * d.y) / side,
                      a.y,
                      g / side,
                      h / side};
        return result;
    }

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
