// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderScan.h"
#include "detection/QrSymbol.h"

#include <cstddef>
#include <span>
#include <vector>

namespace quillmark {

/// Three finder marks that can belong to one code.
struct FinderTriangle {
    FinderMark corner; ///< the one between the other two: the code's top left
    FinderMark first;  ///< the two at the ends of its sides; mirrored codes are not told
    FinderMark second; ///< apart here, so either may be the top right
    double module = 0; ///< mean pixels to one module
    double misfit = 0; ///< 0 is a perfect right-angled isosceles triangle

    /// The middle of the code.
    PixelPoint middle() const { return {(first.x + second.x) / 2, (first.y + second.y) / 2}; }

    /// The parallelogram's fourth corner: about where the code's fourth corner is.
    PixelPoint opposite() const
    {
        return {first.x + second.x - corner.x, first.y + second.y - corner.y};
    }
};

/// Whether two marks are of like size and as far apart as a code's finder patterns can be.
bool canBeNeighbours(const FinderMark &a, const FinderMark &b);

/// Triangles of marks of one polarity and of like size, as far apart as the sides of a
/// code of 21 to 177 modules, best first, at most `most` of them; of several triangles
/// in one place only the best. Where timing patterns are seen along both sides of a triangle,
/// it comes before all others. Of each polarity the 500 marks of most hits are tried, without
/// timing patterns 80, and each with 32 others at most. Marks in pixels of the picture.
/// Any thread.
std::vector<FinderTriangle> findTriangles(const LumaView &picture,
                                          std::span<const FinderMark> marks, std::size_t most);

/// Keeps the `most` triangles that fit best, best first.
void keepBest(std::vector<FinderTriangle> &triangles, std::size_t most);

/// The first `most` of those that stand in different places: two are in one where their corners
/// and middles are nearer than a share `near` of the distance between the ends.
std::vector<FinderTriangle> inDifferentPlaces(std::span<const FinderTriangle> triangles,
                                              double near, std::size_t most);

} // namespace quillmark
