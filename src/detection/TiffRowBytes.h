// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/TiffShape.h"

#include <cstdint>
#include <span>

namespace quillmark {

/// Turns bytes as they are in the file, without compression, into samples as this machine
/// has them. They are aligned for their type.
void toMachineOrder(std::span<std::uint8_t> bytes, const TiffShape &shape);

/// Sums up what "horizontal differencing" (TIFF 6.0, section 14) has stored of one row, in place:
/// samples of 8, 16 or 32 bits in this machine's order, `channels` to a pixel.
void addDifferences(std::span<std::uint8_t> row, int bits, int channels);

} // namespace quillmark
