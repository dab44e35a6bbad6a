// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark {

/// In pixels.
struct PictureSize {
    int width = 0;
    int height = 0;

    bool operator==(const PictureSize &) const = default;
};

/// One picture in colour: height rows of width pixels, packed, top row first; each pixel
/// its red, green and blue in one byte each. The values are as the file has them: no
/// profile has been applied.
struct PictureImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    const std::uint8_t *pixel(int x, int y) const
    {
        return pixels.data() + 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(x));
    }
    std::uint8_t *pixel(int x, int y)
    {
        return pixels.data() + 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(x));
    }
};

/// The largest size with the proportions of `picture` that fits into `box` and is not larger
/// than the picture itself; at least one pixel each way. All sides are above 0.
PictureSize fittedSize(PictureSize picture, PictureSize box);

/// Whether rows and columns change places for a picture to be upright that is stored with the
/// given orientation (Exif 2.32, tag 0x0112).
constexpr bool swapsSides(std::uint32_t orientation)
{
    return orientation >= 5 && orientation <= 8;
}

/// The picture as it is to be looked at. What is no orientation means upright.
PictureImage uprightImage(PictureImage stored, std::uint32_t orientation);

} // namespace quillmark
