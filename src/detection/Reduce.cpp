// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/Reduce.h"

#include "detection/LumaKernels.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

void addRow(std::span<std::uint16_t> sums, const std::uint8_t *row)
{
    for (std::size_t x = 0; x < sums.size(); ++x) {
        sums[x] = static_cast<std::uint16_t>(sums[x] + row[x]);
    }
}

/// Sums of `factor` columns each, divided by the box's area. The factor is known when
/// compiled where it can be: that lets the loop become vector code.
template <unsigned knownFactor>
void meanOfColumns(const std::uint16_t *sums, std::uint8_t *out, int width, unsigned anyFactor)
{
    const unsigned factor = knownFactor != 0 ? knownFactor : anyFactor;
    const unsigned area = factor * factor;
    const unsigned reciprocal = (65536U + area / 2) / area;
    for (int x = 0; x < width; ++x) {
        unsigned sum = 0;
        for (unsigned i = 0; i < factor; ++i) {
            sum += sums[static_cast<unsigned>(x) * factor + i];
        }
        out[x] = static_cast<std::uint8_t>(std::min(255U, (sum * reciprocal + 32768U) >> 16));
    }
}

void meanOfColumns(const std::uint16_t *sums, std::uint8_t *out, int width, int factor)
{
    switch (factor) {
    case 2:
        return meanOfColumns<2>(sums, out, width, 0);
    case 4:
        return meanOfColumns<4>(sums, out, width, 0);
    default:
        return meanOfColumns<0>(sums, out, width, static_cast<unsigned>(factor));
    }
}

} // namespace

BoxReduction::BoxReduction(const LumaView &picture, int factor)
    : m_picture(picture),
      m_factor(factor),
      m_reduced(blankImage(picture.width / factor, picture.height / factor)),
      m_sums(static_cast<std::size_t>(picture.width))
{}

int BoxReduction::advance(int end)
{
    for (; m_end < std::min(end / m_factor, m_reduced.height); ++m_end) {
        if (m_factor == 3) {
            const std::uint8_t *top = m_picture.row(m_end * 3);
            meanOfTriples({top, top + m_picture.stride, top + 2 * m_picture.stride},
                          static_cast<std::size_t>(m_reduced.width), m_reduced.row(m_end));
            continue;
        }
        std::ranges::fill(m_sums, std::uint16_t{0});
        for (int i = 0; i < m_factor; ++i) {
            addRow(m_sums, m_picture.row(m_end * m_factor + i));
        }
        meanOfColumns(m_sums.data(), m_reduced.row(m_end), m_reduced.width, m_factor);
    }
    return m_end;
}

LumaImage reduceByBox(const LumaView &picture, int factor)
{
    BoxReduction reduction(picture, factor);
    reduction.advance(picture.height);
    return reduction.take();
}

LumaImage enlarge(const LumaView &picture, int factor)
{
    LumaImage enlarged = blankImage(picture.width * factor, picture.height * factor);
    // Pixel centres: output pixel i lies at (i + 1/2) / factor - 1/2 of the input, which is
    // counted in steps of half an output pixel to stay whole.
    const int steps = 2 * factor;
    const auto place = [factor, steps](int index, int limit) {
        const int position = std::clamp(2 * index + 1 - factor, 0, (limit - 1) * steps);
        return std::pair(std::min(position / steps, std::max(0, limit - 2)), position);
    };
    for (int y = 0; y < enlarged.height; ++y) {
        const auto [top, down] = place(y, picture.height);
        const std::uint8_t *upper = picture.row(top);
        const std::uint8_t *lower = picture.row(std::min(top + 1, picture.height - 1));
        const int lowerShare = down - top * steps;
        for (int x = 0; x < enlarged.width; ++x) {
            const auto [left, along] = place(x, picture.width);
            const int right = std::min(left + 1, picture.width - 1);
            const int rightShare = along - left * steps;
            const int above = upper[left] * (steps - rightShare) + upper[right] * rightShare;
            const int below = lower[left] * (steps - rightShare) + lower[right] * rightShare;
            const int sum = above * (steps - lowerShare) + below * lowerShare;
            enlarged.row(y)[x] =
                static_cast<std::uint8_t>((sum + steps * steps / 2) / (steps * steps));
        }
    }
    return enlarged;
}

} // namespace quillmark
