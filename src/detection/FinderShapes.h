// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/AlignedTriangle.h"
#include "detection/LumaView.h"

#include <vector>

namespace quillmark {

/// The finder patterns in a part of a frame by their shape as a whole, of both polarities:
/// dearer than by the runs along rows, but neither blur nor grain nor a print's dots hide it. Only
/// those with modules from `leastModule` to `mostModule` pixels. Throws std::bad_alloc.
/// Any thread.
std::vector<FittedFinder> findFinderShapes(const LumaView &part, double leastModule,
                                           double mostModule);

} // namespace quillmark
