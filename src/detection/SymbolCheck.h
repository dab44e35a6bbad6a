// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

namespace quillmark {

/// Whether a QR code, dark on light, really stands between these corners: finder patterns
/// in three of them and timing patterns between (ISO/IEC 18004 sections 6.3.3 and 6.3.5),
/// in some version from 1 to 40. Texture that a decoder took for a code does not pass.
/// Corners outside the picture do not pass. Never throws; any thread.
bool looksLikeQrSymbol(const LumaView &picture, const SymbolCorners &corners) noexcept;

} // namespace quillmark
