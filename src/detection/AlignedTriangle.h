// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"
#include "detection/PatternFit.h"

#include <cstddef>
#include <span>
#include <vector>

namespace quillmark {

/// A finder pattern of which it is known how it is turned and stretched.
struct FittedFinder {
    LocalFrame frame; ///< in pixels of the picture
    FinderMark mark;  ///< the same without that
};

/// Triangles of patterns that look along each other's sides, agree on how many modules lie between
/// them, and have timing patterns there; best first, `most` at most, of several in one place only
/// the best. Where only two are there with a clear timing pattern between them, the third is
/// supposed where it should be: its mark has no hits. Any thread.
std::vector<FinderTriangle>
alignedTriangles(const LumaView &picture, std::span<const FittedFinder> finders, std::size_t most);

} // namespace quillmark
