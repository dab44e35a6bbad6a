// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/AlignedTriangle.h"
#include "detection/CodeRegion.h"
#include "detection/FinderTriangle.h"
#include "detection/FrameLooks.h"
#include "detection/FramePyramid.h"
#include "detection/LumaView.h"
#include "detection/MarkPool.h"
#include "detection/SymbolList.h"

#include <cstddef>
#include <span>
#include <vector>

namespace quillmark {

/// The looks at one frame, cheapest and most fruitful first. Each adds what it sees: finder
/// marks, and codes where these stand in a triangle.
class FrameSearch
{
public:
    /// Puts codes into `found`. Both must outlive it. Throws std::bad_alloc, as all of it does.
    FrameSearch(const LumaView &frame, SymbolList &found)
        : m_frame(frame), m_looks(frame), m_pyramid(frame, m_looks), m_symbols(found)
    {}

    /// Looks at a frame while its rows come, which makes run() shorter and changes nothing
    /// else. False where the frame was abandoned, and there is nothing to search.
    bool follow(LumaRows &rows);

    /// To be called when the whole frame is there. Goes on until a look reads a slate, or there is
    /// nothing left to try. Another text does not end the search, however much it looks like one:
    /// the slate may stand beside it.
    void run();

private:
    bool isOver() const { return m_symbols.hasSlate(); }
    /// Whether another look may lead anywhere.
    bool mayTryMore() const;
    int earlyEnd(int look) const;
    void lookEarly(int end);
    void lookAtRegions(int scale);
    void lookAtRegion(const LumaView &part, PixelPoint corner, int scale, int sharpening);
    void takeIn(std::vector<FinderMark> marks, const LumaView &part, PixelPoint corner, int scale);
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
    FrameLooks m_looks;
    FramePyramid m_pyramid;
    bool m_isFollowed = false;
    std::size_t m_earlyMarks = 0; ///< that the last early look saw
    MarkPool m_pool;
    std::vector<FinderTriangle> m_tried;
    std::vector<PixelArea> m_shapeAreas; ///< where shapes were looked for
    std::size_t m_spent = 0;             ///< on comparing marks
    std::size_t m_equalised = 0;         ///< modules, by readGrid()
    SymbolList &m_symbols;
};

/// All that is found on a frame; where memory does not suffice, what was found until then.
SymbolList searchFrame(const LumaView &frame);

/// The same while the rows of the frame come. Where it is abandoned, what was found until then may
/// be from rows that are not the frame's: it is of no use.
SymbolList searchFrame(LumaRows &rows);

} // namespace quillmark
