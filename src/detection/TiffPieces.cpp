// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffPieces.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace quillmark {
namespace {

/// As much of an image without compression as is read at once: it stays in the second cache
/// until it is converted.
constexpr std::size_t bandBytes = 256U << 10U;

/// How many rows give a picture of the whole, where single rows can be had.
constexpr int someRows = 256;

/// How many strips or tiles do, and at least which part of them.
constexpr int someBlocks = 16;
constexpr int someBlocksPart = 10;

/// An image of no more pixels than this is decoded in full sooner than one could choose.
constexpr std::int64_t fewPixels = 1'000'000;

int ceilDivided(int value, int by)
{
    return (value - 1) / by + 1;
}

int blocksAcross(const TiffShape &shape)
{
    return ceilDivided(shape.width, shape.blockWidth);
}

} // namespace

TiffPieces::TiffPieces(const TiffShape &shape)
    : m_shape(&shape),
      m_bandRows(
          shape.isReadInRows() && !shape.isCompressed()
              ? static_cast<int>(std::clamp<std::size_t>(
                    bandBytes / shape.rowBytes, 1, static_cast<std::size_t>(shape.blockHeight)))
              : 0)
{}

TiffPieces TiffPieces::all(const TiffShape &shape)
{
    return TiffPieces(shape);
}

TiffPieces TiffPieces::some(const TiffShape &shape)
{
    TiffPieces pieces(shape);
    if (std::int64_t{shape.width} * shape.height <= fewPixels) {
        return pieces;
    }
    if (pieces.m_bandRows > 0) {
        pieces.m_loose = true;
        pieces.m_step = ceilDivided(shape.height, someRows);
        return pieces;
    }
    const int count = pieces.count();
    int step = std::max(count / std::max(someBlocks, count / someBlocksPart), 1);
    // A step that has a divisor in common with a row of tiles would meet some columns only.
    while (std::gcd(step, blocksAcross(shape)) > 1) {
        ++step;
    }
    pieces.m_step = step;
    return pieces;
}

int TiffPieces::bandsOfStrip() const
{
    return ceilDivided(m_shape->blockHeight, m_bandRows);
}

int TiffPieces::count() const
{
    if (m_loose) {
        return ceilDivided(m_shape->height, m_step);
    }
    const int strips = ceilDivided(m_shape->height, m_shape->blockHeight);
    if (m_bandRows > 0) {
        // The last strip may be lower than the others.
        const int last = m_shape->height - (strips - 1) * m_shape->blockHeight;
        return (strips - 1) * bandsOfStrip() + ceilDivided(last, m_bandRows);
    }
    return ceilDivided(strips * blocksAcross(*m_shape), m_step);
}

TiffPiece TiffPieces::at(int number) const
{
    const TiffShape &shape = *m_shape;
    if (m_loose) {
        return {0, number * m_step, shape.width, 1};
    }
    if (m_bandRows > 0) {
        const int strip = number / bandsOfStrip();
        const int inStrip = number % bandsOfStrip() * m_bandRows;
        const int y = strip * shape.blockHeight + inStrip;
        return {0, y, shape.width,
                std::min({m_bandRows, shape.blockHeight - inStrip, shape.height - y})};
    }
    const int block = number * m_step;
    const int x = block % blocksAcross(shape) * shape.blockWidth;
    const int y = block / blocksAcross(shape) * shape.blockHeight;
    return {x, y, std::min(shape.blockWidth, shape.width - x),
            std::min(shape.blockHeight, shape.height - y)};
}

std::optional<int> TiffPieces::find(int numberInAll) const
{
    if (m_loose || numberInAll % m_step != 0) {
        return std::nullopt;
    }
    return numberInAll / m_step;
}

} // namespace quillmark
