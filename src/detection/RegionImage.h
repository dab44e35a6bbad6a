// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

#include <vector>

namespace quillmark {

/// A copy of a part of a frame to measure a code on: dark modules are dark on it whatever
/// they are on the frame, and a module is no more than about six pixels.
class RegionImage
{
public:
    /// The part of the frame around a triangle of finder marks that holds the whole code,
    /// even where it leans. Throws std::bad_alloc.
    RegionImage(const LumaView &frame, const FinderTriangle &triangle);

    /// The square of `reach` pixels of the frame to each side of a mark. Throws std::bad_alloc.
    RegionImage(const LumaView &frame, const FinderMark &mark, double reach);

    /// Below which row of the frame the part around a triangle does not go.
    static double lowestRow(const FinderTriangle &triangle);

    bool isEmpty() const { return m_width < 2 || m_height < 2; }
    int width() const { return m_width; }
    int height() const { return m_height; }

    /// Between the pixels linearly; beyond the edge what stands at it. (0, 0) is the top left
    /// corner of the top left pixel.
    float at(PixelPoint place) const;

    PixelPoint toFrame(PixelPoint place) const
    {
        return {m_left + place.x * m_scale, m_top + place.y * m_scale};
    }
    PixelPoint fromFrame(PixelPoint place) const
    {
        return {(place.x - m_left) / m_scale, (place.y - m_top) / m_scale};
    }
    double scale() const { return m_scale; }

private:
    void take(const LumaView &frame, PixelPoint first, PixelPoint last, double module, bool isDark);

    int m_left = 0;
    int m_top = 0;
    double m_scale = 1; ///< pixels of the frame to one
    int m_width = 0;
    int m_height = 0;
    std::vector<float> m_pixels;
};

} // namespace quillmark
