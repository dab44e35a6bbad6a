// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/Sharpen.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark {
namespace {

constexpr std::array<int, 5> binomial{1, 4, 6, 4, 1}; // sum 16
constexpr int reach = 2;

/// Weighted sums of five rows, 16 times a pixel, with the edge pixels repeated `reach`
/// times on both sides.
void sumRows(const LumaView &picture, int y, std::vector<std::int16_t> &sums)
{
    std::array<const std::uint8_t *, 5> in{};
    for (int i = 0; i < 5; ++i) {
        in[static_cast<std::size_t>(i)] =
            picture.row(std::clamp(y + i - reach, 0, picture.height - 1));
    }
    std::int16_t *out = sums.data() + reach;
    for (int x = 0; x < picture.width; ++x) {
        out[x] = static_cast<std::int16_t>(in[0][x] + in[4][x] + 4 * (in[1][x] + in[3][x]) +
                                           6 * in[2][x]);
    }
    std::fill_n(sums.data(), reach, out[0]);
    std::fill_n(out + picture.width, reach, out[picture.width - 1]);
}

void sharpenRow(const std::uint8_t *in, const std::int16_t *around, int width, int quarters,
                std::uint8_t *out)
{
    for (int x = 0; x < width; ++x) {
        const int mean = around[x] * binomial[0] + around[x + 1] * binomial[1] +
                         around[x + 2] * binomial[2] + around[x + 3] * binomial[3] +
                         around[x + 4] * binomial[4]; // 256 times a pixel
        const int value = in[x] * 1024 + (in[x] * 256 - mean) * quarters;
        out[x] = static_cast<std::uint8_t>(std::clamp((value + 512) >> 10, 0, 255));
    }
}

} // namespace

Sharpening::Sharpening(const LumaView &picture, int quarters)
    : m_picture(picture),
      m_quarters(quarters),
      m_sharpened(blankImage(std::max(picture.width, 0), std::max(picture.height, 0))),
      m_sums(static_cast<std::size_t>(m_sharpened.width + 2 * reach))
{}

int Sharpening::advance(int end)
{
    if (m_sharpened.width == 0) {
        return m_sharpened.height;
    }
    const int last = end < m_picture.height ? end - reach : m_picture.height;
    for (; m_end < last; ++m_end) {
        sumRows(m_picture, m_end, m_sums);
        sharpenRow(m_picture.row(m_end), m_sums.data(), m_picture.width, m_quarters,
                   m_sharpened.row(m_end));
    }
    return m_end;
}

LumaImage sharpen(const LumaView &picture, int quarters)
{
    Sharpening sharpening(picture, quarters);
    sharpening.advance(picture.height);
    return sharpening.take();
}

void invert(LumaImage &image)
{
    for (std::uint8_t &pixel : image.pixels) {
        pixel = static_cast<std::uint8_t>(255 - pixel);
    }
}

} // namespace quillmark
