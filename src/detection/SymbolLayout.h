// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SymbolPattern.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark {

/// How much of a symbol may be wrong, in the order of ISO/IEC 18004:2015 section 6.5.1.
enum class ErrorCorrection : std::uint8_t { low, medium, quartile, high };

/// What a symbol says of itself beside its version (section 7.9).
struct SymbolFormat {
    ErrorCorrection correction = ErrorCorrection::low;
    int mask = 0; ///< 0 to 7

    /// The 15 bits in which it is told, the least significant first.
    std::array<bool, 15> bits() const;
};

/// Whether a mask turns a module over (section 7.8.2).
bool isMasked(int mask, int column, int row);

/// A place in a symbol, in modules.
struct ModulePlace {
    int column = 0;
    int row = 0;
};

/// The modules of the two copies of a symbol's format, in the order of its bits (section 7.9.1).
std::array<std::array<ModulePlace, 15>, 2> formatPlaces(int side);

/// The modules of a symbol's data, in the order in which the bits of its codewords lie
/// on them (section 7.7.3).
std::vector<ModulePlace> dataPlaces(const SymbolPattern &pattern);

/// One block of a symbol's codewords: which of the symbol's each of its own is, and how many of
/// the last are error correction.
struct CodewordBlock {
    std::vector<std::size_t> codewords;
    int corrections = 0;
};

/// The blocks into which a symbol of so many codewords is divided (section 7.6, table 9).
std::vector<CodewordBlock> codewordBlocks(int version, ErrorCorrection correction,
                                          std::size_t codewords);

} // namespace quillmark
