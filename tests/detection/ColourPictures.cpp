// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ColourPictures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace quillmark::test {

PictureImage expectedPicture(const RasterImage &image)
{
    PictureImage picture{image.width, image.height, {}};
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            for (int channel = 0; channel < 3; ++channel) {
                const int sample = image.at(x, y, image.channels == 1 ? 0 : channel);
                picture.pixels.push_back(
                    static_cast<std::uint8_t>(std::lround(sample / 65535.0 * 255)));
            }
        }
    }
    return picture;
}

ColourDifference difference(const PictureImage &a, const PictureImage &b, int from, int to)
{
    ColourDifference result;
    const long count = 3L * (to - from) * a.width;
    const std::uint8_t *first = a.pixel(0, from);
    const std::uint8_t *second = b.pixel(0, from);
    for (long i = 0; i < count; ++i) {
        const int apart = std::abs(first[i] - second[i]);
        result.mean += apart;
        result.greatest = std::max(result.greatest, apart);
    }
    result.mean /= static_cast<double>(count);
    return result;
}

ColourDifference difference(const PictureImage &a, const PictureImage &b)
{
    return difference(a, b, 0, a.height);
}

bool isMidGrey(const PictureImage &image, int from, int to)
{
    return std::all_of(image.pixel(0, from), image.pixel(0, from) + 3L * (to - from) * image.width,
                       [](std::uint8_t value) { return value == 128; });
}

} // namespace quillmark::test
