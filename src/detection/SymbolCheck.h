// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

#include <optional>

namespace quillmark {

/// Where the QR code of a triangle of finder marks stands, if there is one: all three
/// patterns, and the timing patterns between them (ISO/IEC 18004 sections 6.3.3 and 6.3.5),
/// agree in one version from 1 to 40. Only a code that hardly leans is told for sure.
/// Both in pixels of the picture, where a module is best about 3 to 8 pixels. Any thread.
std::optional<SymbolCorners> findSymbol(const LumaView &picture, const FinderTriangle &triangle);

} // namespace quillmark
