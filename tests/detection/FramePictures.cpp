// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FramePictures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quillmark::test {
namespace {

constexpr int width = 181;
constexpr int height = 123;

std::uint16_t sample(double share)
{
    return static_cast<std::uint16_t>(std::lround(std::clamp(share, 0.0, 1.0) * 65535));
}

} // namespace

RasterImage colourPicture()
{
    RasterImage image{width, height, 3, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double across = static_cast<double>(x) / (width - 1);
            const double down = static_cast<double>(y) / (height - 1);
            const bool square = (x / 20 + y / 20) % 4 == 0;
            image.samples.push_back(sample(square ? 1 - across : across));
            image.samples.push_back(sample(square ? across : down));
            image.samples.push_back(sample(square ? across * down : 1 - down * across));
        }
    }
    return image;
}

RasterImage greyPicture()
{
    RasterImage image{width, height, 1, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const double across = static_cast<double>(x) / (width - 1);
            const bool square = (x / 20 + y / 20) % 3 == 0;
            image.samples.push_back(sample(square ? 1 - across : across));
        }
    }
    return image;
}

RasterImage squeezed(RasterImage image, double black, double white)
{
    for (std::uint16_t &value : image.samples) {
        value = static_cast<std::uint16_t>(std::lround(65535 * black + value * (white - black)));
    }
    return image;
}

LumaImage expectedLuma(const RasterImage &image, int bits)
{
    LumaImage luma{image.width, image.height, {}};
    const double levels = std::min(std::pow(2.0, bits) - 1, 65535.0);
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            const auto share = [&](int channel) {
                return std::round(image.at(x, y, channel) / 65535.0 * levels) / levels;
            };
            const double value = image.channels == 1
                                     ? share(0)
                                     : 0.299 * share(0) + 0.587 * share(1) + 0.114 * share(2);
            luma.pixels.push_back(static_cast<std::uint8_t>(std::lround(value * 255)));
        }
    }
    return luma;
}

LumaDifference difference(const LumaImage &a, const LumaImage &b, int from, int to)
{
    LumaDifference result;
    for (int y = from; y < to; ++y) {
        for (int x = 0; x < a.width; ++x) {
            const int apart = std::abs(a.row(y)[x] - b.row(y)[x]);
            result.mean += apart;
            result.greatest = std::max(result.greatest, apart);
        }
    }
    result.mean /= static_cast<double>(to - from) * a.width;
    return result;
}

LumaDifference difference(const LumaImage &a, const LumaImage &b)
{
    return difference(a, b, 0, a.height);
}

bool isMidGrey(const LumaImage &image, int from, int to)
{
    return std::all_of(image.row(from),
                       image.row(from) + static_cast<long>(to - from) * image.width,
                       [](std::uint8_t pixel) { return pixel == 128; });
}

} // namespace quillmark::test
