// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PixelGrid.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmark::pixelgrid {
namespace {

constexpr qreal thickestLine = 2.0;

/// Positions come from sums of fractions: what is meant as a boundary is one.
constexpr qreal tolerance = 1e-4;

std::pair<qreal, qreal> alignedSide(qreal start, qreal length, qreal scale)
{
    const qreal from = std::floor(start * scale + 0.5 + tolerance) / scale;
    if (length <= thickestLine) {
        return {from, thickness(length, scale)};
    }
    const qreal to = std::floor((start + length) * scale + 0.5 + tolerance) / scale;
    return {from, to - from};
}

} // namespace

qreal thickness(qreal length, qreal scale)
{
    if (length <= 0) {
        return 0;
    }
    return std::max(1.0, std::floor(length * scale + tolerance)) / scale;
}

QRectF aligned(const QRectF &rect, qreal scale)
{
    const auto [x, width] = alignedSide(rect.x(), rect.width(), scale);
    const auto [y, height] = alignedSide(rect.y(), rect.height(), scale);
    return {x, y, width, height};
}

} // namespace quillmark::pixelgrid
