// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

#include <QString>

#include <optional>

namespace quillmark {

/// What another library (ZBar) makes of a code that was seen on a frame but not understood:
/// it looks at the place alone, in both polarities, enlarged or reduced to modules of a few
/// pixels. Nothing where it does not read one text that is UTF-8. Never throws. Any thread.
std::optional<QString> askForSecondOpinion(const LumaView &frame, const SymbolCorners &corners,
                                           double module) noexcept;

} // namespace quillmark
