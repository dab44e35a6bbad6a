// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ImageFiles.h"

#include <QColor>

#include <cstdint>

namespace quillmark::test {

/// Red in its left half, blue in its right half.
inline RasterImage twoHalves(int width, int height)
{
    RasterImage image{.width = width, .height = height};
    for (int i = 0; i < width * height; ++i) {
        const bool left = i % width < width / 2;
        image.samples.insert(image.samples.end(), {static_cast<std::uint16_t>(left ? 65535 : 0), 0,
                                                   static_cast<std::uint16_t>(left ? 0 : 65535)});
    }
    return image;
}

inline bool isRed(QColor color)
{
    return color.red() > 200 && color.blue() < 60;
}
inline bool isBlue(QColor color)
{
    return color.blue() > 200 && color.red() < 60;
}

} // namespace quillmark::test
