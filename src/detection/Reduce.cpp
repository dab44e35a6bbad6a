// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/Reduce.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace quillmark {
namespace {

LumaImage blankImage(int width, int height)
{
    LumaImage image;
    image.width = width;
    image.height = height;
    image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    return image;
}

void addRow(std::span<std::uint16_t> sums, const std::uint8_t *row, unsigned weight)
{
    for (std::size_t x = 0; x < sums.size(); ++x) {
        sums[x] = static_cast<std::uint16_t>(sums[x] + row[x] * weight);
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
    case 3:
        return meanOfColumns<3>(sums, out, width, 0);
    case 4:
        return meanOfColumns<4>(sums, out, width, 0);
    default:
        return meanOfColumns<0>(sums, out, width, static_cast<unsigned>(factor));
    }
}

/// One output pixel in a direction reduced to seven tenths covers ten sevenths of input
/// pixels: the first input pixel, and the sevenths of it and its successors.
struct Cover {
    int first;
    std::array<unsigned, 3> weights;
};

Cover sevenTenthsCover(int index)
{
    constexpr int step = 10;
    constexpr int pixel = 7;
    const int from = index * step;
    Cover cover{from / pixel, {}};
    for (int i = 0; i < 3; ++i) {
        const int pixelFrom = (cover.first + i) * pixel;
        const int shared = std::min(from + step, pixelFrom + pixel) - std::max(from, pixelFrom);
        cover.weights[static_cast<std::size_t>(i)] = static_cast<unsigned>(std::max(0, shared));
    }
    return cover;
}

} // namespace

LumaImage reduceByBox(const LumaView &picture, int factor)
{
    LumaImage reduced = blankImage(picture.width / factor, picture.height / factor);
    std::vector<std::uint16_t> sums(static_cast<std::size_t>(picture.width));
    for (int y = 0; y < reduced.height; ++y) {
        std::ranges::fill(sums, std::uint16_t{0});
        for (int i = 0; i < factor; ++i) {
            addRow(sums, picture.row(y * factor + i), 1);
        }
        meanOfColumns(sums.data(), reduced.row(y), reduced.width, factor);
    }
    return reduced;
}

LumaImage reduceToSevenTenths(const LumaView &picture)
{
    LumaImage reduced = blankImage(picture.width * 7 / 10, picture.height * 7 / 10);
    // A third pixel of weight 0 may lie beyond the end: the sums have room for it.
    std::vector<std::uint16_t> sums(static_cast<std::size_t>(picture.width) + 2);
    const std::span<std::uint16_t> columns(sums.data(), static_cast<std::size_t>(picture.width));
    std::vector<Cover> covers;
    covers.reserve(static_cast<std::size_t>(reduced.width));
    for (int x = 0; x < reduced.width; ++x) {
        covers.push_back(sevenTenthsCover(x));
    }
    for (int y = 0; y < reduced.height; ++y) {
        const Cover rows = sevenTenthsCover(y);
        std::ranges::fill(sums, std::uint16_t{0});
        for (int i = 0; i < 3; ++i) {
            const unsigned weight = rows.weights[static_cast<std::size_t>(i)];
            if (weight != 0) {
                addRow(columns, picture.row(rows.first + i), weight);
            }
        }
        std::uint8_t *out = reduced.row(y);
        for (const Cover &cover : covers) {
            const std::uint16_t *in = sums.data() + cover.first;
            const unsigned sum =
                in[0] * cover.weights[0] + in[1] * cover.weights[1] + in[2] * cover.weights[2];
            *out++ = static_cast<std::uint8_t>((sum + 50) / 100);
        }
    }
    return reduced;
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
