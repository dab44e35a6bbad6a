// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"

#include <vector>

namespace quillmark {

/// The triangles that two finder marks make with a third pattern that is found where one should
/// be: beside either, or over against their middle. At most six. Marks in pixels of the frame.
/// Throws std::bad_alloc. Blocks; any thread.
std::vector<FinderTriangle> completedTriangles(const LumaView &frame, const FinderMark &first,
                                               const FinderMark &second);

} // namespace quillmark
