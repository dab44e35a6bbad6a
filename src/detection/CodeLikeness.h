// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/CodeRegion.h"
#include "detection/LumaView.h"

namespace quillmark {

/// Whether somewhere in an area that is busy like a code, light and dark even out over a
/// few modules as those of a code do. In foliage, stone and cloth large patches differ as much as
/// small ones. Area in pixels of the picture, with its margins. Any thread.
bool evensOut(const LumaView &picture, const PixelArea &area);

} // namespace quillmark
