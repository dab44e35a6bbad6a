// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

#include <cstddef>
#include <optional>

namespace quillmark {

/// Reads the QR code whose finder patterns a triangle marks, by its own grid: every module is
/// sampled where it lies, told dark or light beside its neighbours, and the symbol drawn anew
/// for the decoder. With a text only where that succeeded; nothing where no code stands there.
/// Blocks; any thread. Adds to `work` how many modules were equalised, each time counted: a
/// hundred thousand take some 30 ms.
std::optional<QrSymbol> readGrid(const LumaView &frame, const FinderTriangle &triangle,
                                 std::size_t *work = nullptr) noexcept;

} // namespace quillmark
