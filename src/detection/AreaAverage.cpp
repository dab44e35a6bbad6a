// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/AreaAverage.h"

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

constexpr std::uint64_t unit = 256; ///< parts of a pixel
constexpr std::uint8_t midGrey = 128;

} // namespace

AreaAverage::AreaAverage(PictureSize from, PictureSize to, int rowsTogether)
    : m_picture{to.width, to.height, {}},
      m_rowsTogether(rowsTogether),
      m_columns(edgesOf(from.width, to.width)),
      m_rows(edgesOf(from.height, to.height)),
      m_rowSums(static_cast<std::size_t>(to.width))
{
    m_picture.pixels.resize(m_rowSums.size() * static_cast<std::size_t>(to.height) * 3, midGrey);
}

AreaAverage::Edges AreaAverage::edgesOf(int from, int to)
{
    const auto length = static_cast<std::uint64_t>(from);
    const auto areas = static_cast<std::uint64_t>(to);
    Edges edges;
    edges.reserve(areas + 1);
    for (std::uint64_t i = 0; i <= areas; ++i) {
        // In two steps, so that nothing overflows.
        edges.push_back(i * length / areas * unit + i * length % areas * unit / areas);
    }
    return edges;
}

/// The area in which a pixel begins.
std::size_t AreaAverage::areaAt(const Edges &edges, int position)
{
    const auto next =
        std::upper_bound(edges.begin(), edges.end(), static_cast<std::uint64_t>(position) * unit);
    return static_cast<std::size_t>(next - edges.begin()) - 1;
}

/// Sums the pixels up in m_rowSums, from the area in which the first one begins, and gives the
/// area behind the last one.
std::size_t AreaAverage::sumColumns(int x, int count, const std::uint8_t *rgb)
{
    const std::uint64_t begin = static_cast<std::uint64_t>(x) * unit;
    const std::uint64_t end = begin + static_cast<std::uint64_t>(count) * unit;
    std::size_t area = areaAt(m_columns, x);
    for (; area < m_rowSums.size() && m_columns[area] < end; ++area) {
        const std::uint64_t left = std::max(m_columns[area], begin);
        const std::uint64_t right = std::min(m_columns[area + 1], end);
        Sum sum{0, 0, 0, right - left};
        const auto add = [&sum](const std::uint8_t *pixel, std::uint64_t weight) {
            sum.red += pixel[0] * weight;
            sum.green += pixel[1] * weight;
            sum.blue += pixel[2] * weight;
        };
        const std::uint8_t *pixel = rgb + 3 * (left / unit - begin / unit);
        const std::uint64_t firstEnd = (left / unit + 1) * unit;
        if (firstEnd >= right) {
            add(pixel, right - left);
        } else {
            const std::uint8_t *last = rgb + 3 * (right / unit - begin / unit);
            Sum inner;
            for (const std::uint8_t *p = pixel + 3; p < last; p += 3) {
                inner.red += p[0];
                inner.green += p[1];
                inner.blue += p[2];
            }
            sum = {inner.red * unit, inner.green * unit, inner.blue * unit, sum.weight};
            add(pixel, firstEnd - left);
            if (right % unit != 0) {
                add(last, right % unit);
            }
        }
        m_rowSums[area] = sum;
    }
    return area;
}

std::vector<AreaAverage::Sum> &AreaAverage::openRow(std::size_t row)
{
    while (m_firstOpen + m_open.size() <= row) {
        m_open.emplace_back(m_rowSums.size());
    }
    return m_open[row - m_firstOpen];
}

void AreaAverage::closeRowsBefore(std::size_t row)
{
    for (; m_firstOpen < row && !m_open.empty(); ++m_firstOpen) {
        std::uint8_t *out = m_picture.pixel(0, static_cast<int>(m_firstOpen));
        for (const Sum &sum : m_open.front()) {
            if (sum.weight > 0) {
                const std::uint64_t half = sum.weight / 2;
                out[0] = static_cast<std::uint8_t>((sum.red + half) / sum.weight);
                out[1] = static_cast<std::uint8_t>((sum.green + half) / sum.weight);
                out[2] = static_cast<std::uint8_t>((sum.blue + half) / sum.weight);
            }
            out += 3;
        }
        m_open.pop_front();
    }
    m_firstOpen = std::max(m_firstOpen, row);
}

void AreaAverage::add(int x, int y, int count, const std::uint8_t *rgb)
{
    closeRowsBefore(areaAt(m_rows, y / m_rowsTogether * m_rowsTogether));
    const std::size_t first = areaAt(m_columns, x);
    const std::size_t end = sumColumns(x, count, rgb);
    const std::uint64_t top = static_cast<std::uint64_t>(y) * unit;
    const std::uint64_t bottom = top + unit;
    for (std::size_t row = areaAt(m_rows, y); row + 1 < m_rows.size() && m_rows[row] < bottom;
         ++row) {
        const std::uint64_t share = std::min(m_rows[row + 1], bottom) - std::max(m_rows[row], top);
        std::vector<Sum> &sums = openRow(row);
        for (std::size_t area = first; area < end; ++area) {
            const Sum &added = m_rowSums[area];
            Sum &sum = sums[area];
            sum.red += added.red * share;
            sum.green += added.green * share;
            sum.blue += added.blue * share;
            sum.weight += added.weight * share;
        }
    }
}

PictureImage AreaAverage::finish()
{
    closeRowsBefore(m_rows.size() - 1);
    return std::move(m_picture);
}

} // namespace quillmark
