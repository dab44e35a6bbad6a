// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderScan.h"
#include "detection/LumaView.h"

namespace quillmark {

/// Whether a timing pattern (ISO/IEC 18004:2015 section 6.3.5) runs between two finder marks, on
/// the one or the other side of the line between their middles: dark and light modules taking
/// turns. On soft and coarse pictures it may not be seen although it is there. Marks in pixels
/// of the picture. Any thread.
bool hasTimingLine(const LumaView &picture, const FinderMark &from, const FinderMark &to);

} // namespace quillmark
