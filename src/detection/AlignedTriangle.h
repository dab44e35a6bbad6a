// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/PatternFit.h"

#include <cstddef>
#include <span>
#include <vector>

namespace quillmark {

/// A finder pattern of which it is known how it is turned and stretched.
struct FittedFinder {
    LocalFrame frame; ///< in pixels of the picture
    FinderMark mark;  ///< the same without that

    /// From pixels of a part of a copy, which begins at a place of it, to pixels of the frame.
    void toFrame(PixelPoint corner, double scale)
    {
        const auto enlarge = [scale](PixelPoint &step) { step = {step.x * scale, step.y * scale}; };
        frame.middle = {(frame.middle.x + corner.x) * scale, (frame.middle.y + corner.y) * scale};
        enlarge(frame.right);
        enlarge(frame.down);
        mark.x = frame.middle.x;
        mark.y = frame.middle.y;
        mark.module *= scale;
    }
};

/// Triangles of patterns that look along each other's sides and agree on how many modules lie
/// between them, best first, `most` at most; of several in one place only the best. They need
/// no other evidence, but there may be more than one on a code. Any thread.
std::vector<FinderTriangle> alignedTriangles(std::span<const FittedFinder> finders,
                                             std::size_t most);

} // namespace quillmark
