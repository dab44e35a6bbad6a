// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/PictureImage.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace quillmark {

/// Makes a picture smaller while its rows come in: each pixel becomes the mean of the area
/// that it covers, pixels that lie on the edge of two areas counting for their share in
/// either. Means are of the stored values, without undoing a transfer curve. Holds the small
/// picture and the sums of the rows that are still open.
class AreaAverage
{
public:
    /// `to` is no larger than `from` on either side, and no side is 0. Rows come in the
    /// order from the top, but for `rowsTogether` rows each, counted from the first, which
    /// may come in pieces and any order.
    AreaAverage(PictureSize from, PictureSize to, int rowsTogether);

    /// Adds `count` pixels of row `y`, from column `x` on: red, green and blue each. All lie
    /// inside the picture, and none comes twice.
    void add(int x, int y, int count, const std::uint8_t *rgb);

    /// The small picture. An area of which nothing came is mid-grey; of which something
    /// came, that counts.
    PictureImage finish();

private:
    struct Sum {
        std::uint64_t red = 0;
        std::uint64_t green = 0;
        std::uint64_t blue = 0;
        std::uint64_t weight = 0;
    };

    /// Edges of the areas along one side, in 1/256 of a pixel of the large picture.
    using Edges = std::vector<std::uint64_t>;

    static Edges edgesOf(int from, int to);
    static std::size_t areaAt(const Edges &edges, int position);
    std::size_t sumColumns(int x, int count, const std::uint8_t *rgb);
    std::vector<Sum> &openRow(std::size_t row);
    void closeRowsBefore(std::size_t row);

    PictureImage m_picture;
    int m_rowsTogether;
    Edges m_columns;
    Edges m_rows;
    std::vector<Sum> m_rowSums;          ///< of the row that is being added, by columns
    std::deque<std::vector<Sum>> m_open; ///< rows of the small picture, from m_firstOpen on
    std::size_t m_firstOpen = 0;
};

} // namespace quillmark
