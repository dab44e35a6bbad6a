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

/// Rows of a picture that change below while they are still needed above: keeps the
/// original of the last few.
class OriginalRows
{
public:
    explicit OriginalRows(const LumaImage &image) : m_image(image)
    {
        for (int y = 0; y <= reach; ++y) {
            load(y);
        }
    }

    /// Makes the rows up to y + reach available, in ascending order of y.
    void advanceTo(int y)
    {
        if (y > 0) {
            load(y + reach);
        }
    }

    const std::uint8_t *row(int y) const
    {
        return m_rows[slot(std::clamp(y, 0, m_image.height - 1))].data();
    }

private:
    static std::size_t slot(int y) { return static_cast<std::size_t>(y % (2 * reach + 1)); }

    void load(int y)
    {
        if (y < m_image.height) {
            m_rows[slot(y)].assign(m_image.row(y), m_image.row(y) + m_image.width);
        }
    }

    const LumaImage &m_image;
    std::array<std::vector<std::uint8_t>, 2 * reach + 1> m_rows;
};

/// Weighted sums of five rows, 16 times a pixel, with the edge pixels repeated `reach`
/// times on both sides.
void sumRows(const OriginalRows &rows, int y, int width, std::vector<std::int16_t> &sums)
{
    const std::array<const std::uint8_t *, 5> in{rows.row(y - 2), rows.row(y - 1), rows.row(y),
                                                 rows.row(y + 1), rows.row(y + 2)};
    std::int16_t *out = sums.data() + reach;
    for (int x = 0; x < width; ++x) {
        out[x] = static_cast<std::int16_t>(in[0][x] + in[4][x] + 4 * (in[1][x] + in[3][x]) +
                                           6 * in[2][x]);
    }
    std::fill_n(sums.data(), reach, out[0]);
    std::fill_n(out + width, reach, out[width - 1]);
}

} // namespace

void sharpen(LumaImage &image, int quarters)
{
    if (image.width <= 0 || image.height <= 0) {
        return;
    }
    OriginalRows rows(image);
    std::vector<std::int16_t> sums(static_cast<std::size_t>(image.width + 2 * reach));
    for (int y = 0; y < image.height; ++y) {
        rows.advanceTo(y);
        sumRows(rows, y, image.width, sums);
        const std::uint8_t *in = rows.row(y);
        std::uint8_t *out = image.row(y);
        const std::int16_t *around = sums.data();
        for (int x = 0; x < image.width; ++x) {
            const int mean = around[x] * binomial[0] + around[x + 1] * binomial[1] +
                             around[x + 2] * binomial[2] + around[x + 3] * binomial[3] +
                             around[x + 4] * binomial[4]; // 256 times a pixel
            const int value = in[x] * 1024 + (in[x] * 256 - mean) * quarters;
            out[x] = static_cast<std::uint8_t>(std::clamp((value + 512) >> 10, 0, 255));
        }
    }
}

void invert(LumaImage &image)
{
    for (std::uint8_t &pixel : image.pixels) {
        pixel = static_cast<std::uint8_t>(255 - pixel);
    }
}

} // namespace quillmark
