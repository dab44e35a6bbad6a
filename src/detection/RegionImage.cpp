// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/RegionImage.h"

#include "detection/Reduce.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace quillmark {
namespace {

constexpr double wantedModule = 4.5; // pixels
constexpr double quietModules = 5;
constexpr double leaningShare = 0.25; // of its size by which a corner may lie farther out

/// The top left and the bottom right corner of what belongs to a triangle.
std::pair<PixelPoint, PixelPoint> cornersAround(const FinderTriangle &triangle)
{
    const std::array<PixelPoint, 4> corners{{{triangle.corner.x, triangle.corner.y},
                                             {triangle.first.x, triangle.first.y},
                                             {triangle.second.x, triangle.second.y},
                                             triangle.opposite()}};
    const auto [left, right] = std::ranges::minmax(corners, {}, &PixelPoint::x);
    const auto [top, bottom] = std::ranges::minmax(corners, {}, &PixelPoint::y);
    const double size = std::max(right.x - left.x, bottom.y - top.y);
    const double margin = (quietModules + 3.5) * triangle.module + leaningShare * size;
    return {{left.x - margin, top.y - margin}, {right.x + margin, bottom.y + margin}};
}

} // namespace

RegionImage::RegionImage(const LumaView &frame, const FinderTriangle &triangle)
{
    const auto [first, last] = cornersAround(triangle);
    take(frame, first, last, triangle.module, triangle.corner.isDark);
}

double RegionImage::lowestRow(const FinderTriangle &triangle)
{
    return cornersAround(triangle).second.y + 1;
}

RegionImage::RegionImage(const LumaView &frame, const FinderMark &mark, double reach)
{
    take(frame, {mark.x - reach, mark.y - reach}, {mark.x + reach, mark.y + reach}, mark.module,
         mark.isDark);
}

void RegionImage::take(const LumaView &frame, PixelPoint first, PixelPoint last, double module,
                       bool isDark)
{
    const auto column = [&frame](double x) {
        return static_cast<int>(std::clamp(x, 0.0, 1.0 * frame.width));
    };
    const auto row = [&frame](double y) {
        return static_cast<int>(std::clamp(y, 0.0, 1.0 * frame.height));
    };
    m_left = column(first.x);
    m_top = row(first.y);
    const int factor = std::clamp(static_cast<int>(std::lround(module / wantedModule)), 1, 16);
    const LumaImage image = reduceByBox(
        frame.cropped(m_left, m_top, column(last.x + 1) - m_left, row(last.y + 1) - m_top), factor);
    m_scale = factor;
    m_width = image.width;
    m_height = image.height;
    m_pixels.resize(image.pixels.size());
    std::ranges::transform(image.pixels, m_pixels.begin(), [isDark](std::uint8_t pixel) {
        return static_cast<float>(isDark ? pixel : 255 - pixel);
    });
}

float RegionImage::at(PixelPoint place) const
{
    // Written so that what is not a number becomes a place too.
    const double x = std::max(0.0, std::min(place.x - 0.5, m_width - 1.001));
    const double y = std::max(0.0, std::min(place.y - 0.5, m_height - 1.001));
    const int column = static_cast<int>(x);
    const int row = static_cast<int>(y);
    const auto right = static_cast<float>(x - column);
    const auto down = static_cast<float>(y - row);
    const float *above = m_pixels.data() +
                         static_cast<std::size_t>(row) * static_cast<std::size_t>(m_width) +
                         static_cast<std::size_t>(column);
    const float *below = above + m_width;
    const float upper = above[0] + right * (above[1] - above[0]);
    const float lower = below[0] + right * (below[1] - below[0]);
    return upper + down * (lower - upper);
}

} // namespace quillmark
