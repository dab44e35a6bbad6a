// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillmark {

// Loops over rows of grey pixels, as vector code that suits the processor (found out when the
// program runs). ScalarKernels.h has the same without vectors, to the bit. Any thread.

/// out[x] is the mean of the nine pixels of three rows from 3x on, rounded.
void meanOfTriples(const std::array<const std::uint8_t *, 3> &rows, std::size_t count,
                   std::uint8_t *out);

/// How many numbers of scratch memory flattenRow() needs.
constexpr std::size_t flattenScratch(std::size_t width)
{
    return 2 * width;
}

/// 16 times the distance of each pixel, lightly smoothed against grain (1 : 2 : 1), from the
/// mean of its neighbourhood, which is 24 pixels to each side as far as the row goes: seven
/// modules of seven pixels. A row of at least one pixel.
void flattenRow(const std::uint8_t *row, std::size_t width, std::uint16_t *scratch,
                std::int16_t *flat);

/// The sums of five rows weighted 1 : 4 : 6 : 4 : 1.
void sumRows(const std::array<const std::uint8_t *, 5> &rows, std::size_t width,
             std::uint16_t *sums);

/// An unsharp mask over a row: `sums` is what sumRows() gives around it, beginning two pixels
/// before the row and ending two behind it, of which the same weighted sums are taken.
void sharpenRow(const std::uint8_t *row, const std::uint16_t *sums, std::size_t width, int quarters,
                std::uint8_t *out);

/// The pixels of a row that make a cell, and how many of them are looked at.
inline constexpr std::size_t cellPixels = 16;
inline constexpr std::size_t cellSteps = 14;

/// How far each of the first fourteen pixels of a cell is from the next but one and from the
/// one in `below`: the sums over a cell are added to sums[2 cell] and sums[2 cell + 1].
void addSteps(const std::uint8_t *row, const std::uint8_t *below, std::size_t cells,
              std::uint64_t *sums);

/// Adds to each of `width` numbers what stands at and around the same place of a row, weighted by
/// the distance: weights[0] * row[x] + weights[u] * (row[x - u] + row[x + u]) for u from 1 to
/// before `reach`, in this order. The row goes on for reach - 1 numbers on either side.
void addMirrored(const float *row, const float *weights, std::size_t reach, std::size_t width,
                 float *sums);

} // namespace quillmark
