// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/PictureImage.h"

#include <algorithm>

namespace quillmark {
namespace {

/// The length that belongs to `length` when `from` becomes `to`.
int scaledLength(int length, int from, int to)
{
    return static_cast<int>(
        std::max<std::int64_t>((std::int64_t{length} * to + from / 2) / from, 1));
}

} // namespace

PictureSize fittedSize(PictureSize picture, PictureSize box)
{
    if (picture.width <= box.width && picture.height <= box.height) {
        return picture;
    }
    // The side that sticks out further decides.
    const bool wide =
        std::int64_t{picture.width} * box.height >= std::int64_t{picture.height} * box.width;
    return wide ? PictureSize{box.width, scaledLength(picture.height, picture.width, box.width)}
                : PictureSize{scaledLength(picture.width, picture.height, box.height), box.height};
}

PictureImage uprightImage(PictureImage stored, std::uint32_t orientation)
{
    if (orientation < 2 || orientation > 8) {
        return stored;
    }
    // The stored picture's first row is at the bottom (3, 4) or, where rows have become
    // columns, on the right (6, 7); its first column is on the right (2, 3) or at the
    // bottom (7, 8).
    const bool swapped = swapsSides(orientation);
    const bool rowsReversed =
        orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    const bool columnsReversed =
        orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    PictureImage upright{swapped ? stored.height : stored.width,
                         swapped ? stored.width : stored.height,
                         std::vector<std::uint8_t>(stored.pixels.size())};
    for (int y = 0; y < stored.height; ++y) {
        const int row = rowsReversed ? stored.height - 1 - y : y;
        for (int x = 0; x < stored.width; ++x) {
            const int column = columnsReversed ? stored.width - 1 - x : x;
            std::copy_n(stored.pixel(x, y), 3,
                        swapped ? upright.pixel(row, column) : upright.pixel(column, row));
        }
    }
    return upright;
}

} // namespace quillmark
