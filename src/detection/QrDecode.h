// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

#include <QString>

#include <optional>
#include <vector>

namespace quillmark {

/// How much work one look of the decoder is.
enum class QrEffort {
    quick,    ///< lines that a code of many rows cannot slip between
    thorough, ///< every third line
};

/// Reads the QR codes that are dark on light in a picture, upright, turned or mirrored,
/// whose modules are about 2 to 15 pixels wide. All symbols that it gives have a text.
/// Gives nothing where the picture is too small to hold a code or memory is short; never
/// throws. Takes one byte a pixel more than the picture. Blocks; any thread.
std::vector<QrSymbol> decodeQrSymbols(const LumaView &picture, QrEffort effort) noexcept;

/// The modules of a symbol, row by row.
struct ModuleBits {
    int side = 0;
    std::vector<bool> dark;
};

/// The text of a symbol whose modules have been read; they may be mirrored, and as many of
/// them wrong as the symbol's error correction bears. Never throws. Any thread.
std::optional<QString> decodeModules(const ModuleBits &modules) noexcept;

} // namespace quillmark
