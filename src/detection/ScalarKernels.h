// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace quillmark::scalar {

// What LumaKernels.h and RunKernels.h describe, pixel by pixel: the rests of rows that fill no
// vector go through these, whole rows where the processor has no vectors, and tests hold the
// vector code against them. Each goes from the pixel `first` to before `end`.

inline void meanOfTriples(const std::array<const std::uint8_t *, 3> &rows, std::size_t first,
                          std::size_t end, std::uint8_t *out)
{
    for (std::size_t x = first; x < end; ++x) {
        unsigned sum = 4; // half of nine, so that the division rounds
        for (const std::uint8_t *row : rows) {
            sum += row[3 * x] + row[3 * x + 1] + row[3 * x + 2];
        }
        out[x] = static_cast<std::uint8_t>(sum / 9);
    }
}

inline constexpr std::size_t flatReach = 24;      // pixels each side
inline constexpr std::uint32_t flatShare = 21400; // 16/49 of 65536

inline void flattenRow(const std::uint8_t *row, std::size_t width, std::size_t first,
                       std::size_t end, std::int16_t *flat)
{
    std::size_t left = first < flatReach ? 0 : first - flatReach;
    std::size_t right = left;
    std::uint32_t around = 0;
    for (std::size_t x = first; x < end; ++x) {
        for (; right < std::min(width, x + flatReach + 1); ++right) {
            around += row[right];
        }
        for (; left + flatReach < x; ++left) {
            around -= row[left];
        }
        const auto count = static_cast<std::uint32_t>(right - left);
        const std::uint32_t mean =
            count == 2 * flatReach + 1 ? around * flatShare >> 16U : 16 * around / count;
        const int smooth =
            4 * (row[x == 0 ? 0 : x - 1] + 2 * row[x] + row[std::min(x + 1, width - 1)]);
        flat[x] = static_cast<std::int16_t>(smooth - static_cast<int>(mean));
    }
}

inline void sumRows(const std::array<const std::uint8_t *, 5> &rows, std::size_t first,
                    std::size_t end, std::uint16_t *sums)
{
    for (std::size_t x = first; x < end; ++x) {
        sums[x] = static_cast<std::uint16_t>(rows[0][x] + rows[4][x] +
                                             4 * (rows[1][x] + rows[3][x]) + 6 * rows[2][x]);
    }
}

inline void sharpenRow(const std::uint8_t *row, const std::uint16_t *sums, int quarters,
                       std::size_t first, std::size_t end, std::uint8_t *out)
{
    for (std::size_t x = first; x < end; ++x) {
        const int mean = sums[x] + sums[x + 4] + 4 * (sums[x + 1] + sums[x + 3]) +
                         6 * sums[x + 2]; // 256 times a pixel
        const int value = row[x] * 1024 + (row[x] * 256 - mean) * quarters;
        out[x] = static_cast<std::uint8_t>(std::clamp((value + 512) >> 10, 0, 255));
    }
}

inline void addSteps(const std::uint8_t *row, const std::uint8_t *below, std::size_t cells,
                     std::uint64_t *sums)
{
    for (std::size_t cell = 0; cell < cells; ++cell, row += 16, below += 16) {
        for (std::size_t x = 0; x < 14; ++x) {
            sums[2 * cell] += static_cast<unsigned>(std::abs(row[x + 2] - row[x]));
            sums[2 * cell + 1] += static_cast<unsigned>(std::abs(below[x] - row[x]));
        }
    }
}

inline void addMirrored(const float *row, const float *weights, std::size_t reach,
                        std::size_t first, std::size_t end, float *sums)
{
    for (std::size_t x = first; x < end; ++x) {
        const float *here = row + x;
        float sum = sums[x] + weights[0] * here[0];
        for (std::size_t u = 1; u < reach; ++u) {
            sum += weights[u] * (*(here - u) + *(here + u));
        }
        sums[x] = sum;
    }
}

inline std::size_t findSignChanges(const std::int16_t *flat, std::size_t first, std::size_t end,
                                   std::int32_t *edges)
{
    // Without a branch: in grain every second pixel is one, and no processor foresees which.
    std::int32_t *next = edges;
    for (std::size_t x = first; x < end; ++x) {
        *next = static_cast<std::int32_t>(x);
        next += (flat[x - 1] ^ flat[x]) < 0;
    }
    return static_cast<std::size_t>(next - edges);
}

inline void placeEdges(const std::int16_t *flat, const std::int32_t *edges, std::size_t first,
                       std::size_t end, float *places)
{
    for (std::size_t i = first; i < end; ++i) {
        const std::int32_t x = edges[i];
        const auto rise = static_cast<float>(flat[x]);
        places[i] = static_cast<float>(x) - rise / (rise - static_cast<float>(flat[x - 1]));
    }
}

// What a run may be in modules, over seven modules in all.
inline constexpr float leastOuter = 0.4F / 7.0F;
inline constexpr float mostOuter = 1.6F / 7.0F;
inline constexpr float leastMiddle = 1.8F / 7.0F;
inline constexpr float mostMiddle = 4.2F / 7.0F;
inline constexpr float leastTotal = 1.6F * 7.0F; // pixels
inline constexpr float mostTotal = 9.0F * 7.0F;

inline bool areFinderRuns(const float *places)
{
    const float total = places[5] - places[0];
    const float middle = places[3] - places[2];
    const auto isOuter = [total](float run) {
        return (run > leastOuter * total) & (run < mostOuter * total);
    };
    return (total > leastTotal) & (total < mostTotal) & (middle > leastMiddle * total) &
           (middle < mostMiddle * total) & isOuter(places[1] - places[0]) &
           isOuter(places[2] - places[1]) & isOuter(places[4] - places[3]) &
           isOuter(places[5] - places[4]);
}

inline std::size_t findFinderRuns(const float *places, std::size_t first, std::size_t end,
                                  std::int32_t *found)
{
    std::size_t count = 0;
    for (std::size_t i = first; i < end; ++i) {
        if (areFinderRuns(places + i)) {
            found[count++] = static_cast<std::int32_t>(i);
        }
    }
    return count;
}

} // namespace quillmark::scalar
