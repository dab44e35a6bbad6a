// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/Sharpen.h"

#include "detection/LumaKernels.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark {
namespace {

constexpr int reach = 2;

/// Of the rows around one, the edge pixels repeated `reach` times on both sides.
void sumAround(const LumaView &picture, int y, std::vector<std::uint16_t> &sums)
{
    std::array<const std::uint8_t *, 5> rows{};
    for (int i = 0; i < 5; ++i) {
        rows[static_cast<std::size_t>(i)] =
            picture.row(std::clamp(y + i - reach, 0, picture.height - 1));
    }
    std::uint16_t *out = sums.data() + reach;
    sumRows(rows, static_cast<std::size_t>(picture.width), out);
    std::fill_n(sums.data(), reach, out[0]);
    std::fill_n(out + picture.width, reach, out[picture.width - 1]);
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
        sumAround(m_picture, m_end, m_sums);
        sharpenRow(m_picture.row(m_end), m_sums.data(), static_cast<std::size_t>(m_picture.width),
                   m_quarters, m_sharpened.row(m_end));
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
