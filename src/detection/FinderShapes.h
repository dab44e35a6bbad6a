// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/AlignedTriangle.h"
#include "detection/CodeRegion.h"
#include "detection/LumaView.h"

#include <span>
#include <vector>

namespace quillmark {

/// The finder patterns in an area of a frame by their shape as a whole, of both polarities:
/// dearer than by the runs along rows, but neither blur nor grain nor a print's dots hide it. Only
/// those with modules from `leastModule` to `mostModule` pixels. All in pixels of the frame.
/// Throws std::bad_alloc. Any thread.
std::vector<FittedFinder> findFinderShapes(const LumaView &frame, const PixelArea &area,
                                           double leastModule, double mostModule);

/// What patterns of that shape stand where marks are. Throws std::bad_alloc. Any thread.
std::vector<FittedFinder> fitFinderMarks(const LumaView &frame, std::span<const FinderMark> marks);

} // namespace quillmark
