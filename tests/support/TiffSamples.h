// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ImageFiles.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quillmark::test {

/// The samples of one pixel in the range 0 to 65535, as they are to be stored.
using TiffPixel = std::vector<std::uint16_t>;

/// A rectangle of the picture; it may reach over the edges, which are then repeated.
struct TiffBlock {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::optional<int> channel; ///< one channel alone, or all interleaved
};

TiffPhotometric resolvedPhotometric(const TiffOptions &options, const RasterImage &image);

TiffPixel storedPixel(const RasterImage &image, const TiffOptions &options, int x, int y);

/// The block's samples, in the bit depth asked for, rows beginning on a byte.
std::vector<std::uint8_t> packedSamples(const RasterImage &image, const TiffOptions &options,
                                        const TiffBlock &block);

/// The same as units of m x n luma samples followed by one of either chroma
/// (TIFF 6.0, section 21).
std::vector<std::uint8_t> packedUnits(const RasterImage &image, const TiffOptions &options,
                                      const TiffBlock &block);

} // namespace quillmark::test
