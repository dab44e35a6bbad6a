// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SampleLevels.h"

#include <cstddef>
#include <cstdint>

namespace quillmark {

// The loops that every sample of a large frame goes through, in the widest vectors that the
// processor has; the results are the same with all of them. Input and output do not overlap.

/// Luma of red, green and blue, the first of `channels` (3 or 4) samples of `count` pixels, as
/// LumaOutput has it.
void lumaOfRgb(const std::uint8_t *samples, int channels, int count, std::uint8_t *out);
void lumaOfRgb(const std::uint16_t *samples, int channels, int count, std::uint16_t *out);

/// Levels of whole numbers of 16 bits. The factor from what lies above black to a byte is in
/// 16.16 fixed point; white comes to 255 and less than a half, so that nothing overflows.
struct WholeLevels {
    explicit WholeLevels(const Levels &levels);

    std::uint32_t black;
    std::uint32_t white;
    std::uint32_t scale;
};

/// What lies outside becomes black or white.
void applyLevels(const WholeLevels &levels, const std::uint16_t *samples, int count,
                 std::uint8_t *out);

/// Exchanges the bytes of each sample.
void swapBytes(std::uint16_t *samples, std::size_t count);

} // namespace quillmark
