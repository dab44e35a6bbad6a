// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/ModuleEqualiser.h"
#include "detection/QrDecode.h"
#include "detection/SymbolPattern.h"

#include <optional>

namespace quillmark {

/// A symbol after its error correction has been used.
struct CorrectedSymbol {
    ModuleBits bits;
    std::vector<bool> sure; ///< the modules of blocks that came out whole
    bool isWhole = false;   ///< all of them
};

/// How well a symbol's levels agree with any format that it may tell: 1 is perfectly; by chance it
/// is about 0.4. Any thread.
double formatAgreement(const ModuleLevels &levels);

/// Corrects a symbol that has more wrong modules than plain error correction bears: codewords of
/// which the levels say that they may well be wrong count as erased, of which twice as many
/// can be made good; first none, then more and more of them (generalised minimum distance
/// decoding: Forney, 1966). The levels may be those of a mirrored symbol. Nothing where not
/// one block comes out whole. Throws std::bad_alloc. Any thread.
std::optional<CorrectedSymbol> correctSymbol(const SymbolPattern &pattern,
                                             const ModuleLevels &levels);

} // namespace quillmark
