// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/PlainCode.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quillmark::test {
namespace {

LumaImage whiteImage(int width, int height)
{
    LumaImage image;
    image.width = width;
    image.height = height;
    image.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 255);
    return image;
}

void copyInto(LumaImage &to, const LumaImage &from, int left)
{
    for (int y = 0; y < from.height; ++y) {
        std::copy_n(from.row(y), from.width, to.row(y) + left);
    }
}

} // namespace

LumaImage drawCode(const QrMatrix &code, int modulePixels, int quietModules)
{
    const std::ptrdiff_t border = static_cast<std::ptrdiff_t>(quietModules) * modulePixels;
    const int side = (code.size + 2 * quietModules) * modulePixels;
    LumaImage image = whiteImage(side, side);
    for (int row = 0; row < code.size * modulePixels; ++row) {
        std::uint8_t *out = image.row(row + quietModules * modulePixels) + border;
        for (int column = 0; column < code.size * modulePixels; ++column) {
            if (code.isDark(column / modulePixels, row / modulePixels)) {
                out[column] = 0;
            }
        }
    }
    return image;
}

LumaImage storedWithOrientation(const LumaImage &upright, int orientation)
{
    const bool swapsSides = orientation >= 5;
    LumaImage stored = swapsSides ? whiteImage(upright.height, upright.width)
                                  : whiteImage(upright.width, upright.height);
    // The tag says which visual sides the stored first row and first column are.
    const bool rowsFromBottom =
        orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8;
    const bool columnsFromRight =
        orientation == 2 || orientation == 3 || orientation == 6 || orientation == 7;
    for (int y = 0; y < stored.height; ++y) {
        for (int x = 0; x < stored.width; ++x) {
            const int across = swapsSides ? y : x;
            const int down = swapsSides ? x : y;
            const int column = columnsFromRight ? upright.width - 1 - across : across;
            const int row = rowsFromBottom ? upright.height - 1 - down : down;
            stored.row(y)[x] = upright.row(row)[column];
        }
    }
    return stored;
}

LumaImage negativeOf(LumaImage image)
{
    for (std::uint8_t &pixel : image.pixels) {
        pixel = static_cast<std::uint8_t>(255 - pixel);
    }
    return image;
}

LumaImage sideBySide(const LumaImage &left, const LumaImage &right)
{
    LumaImage both = whiteImage(left.width + right.width, std::max(left.height, right.height));
    copyInto(both, left, 0);
    copyInto(both, right, left.width);
    return both;
}

} // namespace quillmark::test
