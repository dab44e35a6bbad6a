// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillmark {

/// A rectangle of 8-bit grey pixels that somebody else owns and keeps alive: rows lie
/// `stride` bytes apart.
struct LumaView {
    const std::uint8_t *pixels = nullptr;
    int width = 0;
    int height = 0;
    std::ptrdiff_t stride = 0;

    LumaView() = default;
    LumaView(const std::uint8_t *first, int columns, int rows, std::ptrdiff_t rowStride)
        : pixels(first), width(columns), height(rows), stride(rowStride)
    {}
    LumaView(const LumaImage &image)
        : LumaView(image.pixels.data(), image.width, image.height, image.width)
    {}

    bool isEmpty() const { return pixels == nullptr || width <= 0 || height <= 0; }
    const std::uint8_t *row(int y) const { return pixels + stride * y; }

    /// The part of the rectangle that lies in the view.
    LumaView cropped(int left, int top, int columns, int rows) const
    {
        const int firstColumn = std::clamp(left, 0, width);
        const int firstRow = std::clamp(top, 0, height);
        return {row(firstRow) + firstColumn,
                std::clamp(left + columns, firstColumn, width) - firstColumn,
                std::clamp(top + rows, firstRow, height) - firstRow, stride};
    }
};

/// A black picture.
inline LumaImage blankImage(int width, int height)
{
    LumaImage image;
    image.width = width;
    image.height = height;
    image.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    return image;
}

} // namespace quillmark
