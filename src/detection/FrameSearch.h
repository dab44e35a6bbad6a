// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/AlignedTriangle.h"
#include "detection/CodeRegion.h"
#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"
#include "detection/MarkPool.h"
#include "detection/SymbolList.h"

#include <cstddef>
#include <map>
#include <span>
#include <vector>

namespace quillmark {

/// The looks at one frame, cheapest and most fruitful first. Each adds what it sees: finder
/// marks, and codes where these stand in a triangle.
class FrameSearch
{
public:
    explicit FrameSearch(const LumaView &frame) : m_frame(frame) {}

    /// Goes on until a look reads a slate, or there is nothing left to try. Another text
    /// does not end the search, however much it looks like one: the slate may stand beside it.
    /// Throws std::bad_alloc; what was found until then remains.
    void run();

    const SymbolList &symbols() const { return m_symbols; }

private:
    bool isOver() const { return m_symbols.hasSlate(); }
    /// Whether a copy is large enough for a code to be seen.
    bool isScannedAt(int scale) const;
    std::size_t pixelsAt(int scale) const;
    /// The frame at 1/scale of its size.
    LumaView copy(int scale);

    void look(int scale, int sharpening, int rowStep);
    void lookAtRegions(int scale);
    void lookAt(const LumaView &part, PixelPoint corner, int scale, int sharpening, int rowStep);
    void tryTriangles(std::span<const FinderMark> marks);
    void tryTriangle(const FinderTriangle &triangle);
    void read(const FinderTriangle &triangle);
    void lookForShapes(int scale);
    void fitMarks();
    void tryAligned(std::span<const FittedFinder> finders);
    void completePairs();
    void askAgain(const SymbolCorners &corners);
    void lookAtWhole(int scale);
    void lookAtEnlarged();

    LumaView m_frame;
    std::map<int, LumaImage> m_copies;
    MarkPool m_pool;
    std::vector<FinderTriangle> m_tried;
    std::vector<PixelArea> m_shapeAreas; ///< where shapes were looked for
    SymbolList m_symbols;
};

} // namespace quillmark
