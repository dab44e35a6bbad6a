// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameSearch.h"

#include "detection/AlignedTriangle.h"
#include "detection/CodeLikeness.h"
#include "detection/CodeRegion.h"
#include "detection/CodeTexture.h"
#include "detection/FinderCompletion.h"
#include "detection/FinderScan.h"
#include "detection/FinderShapes.h"
#include "detection/FrameCopy.h"
#include "detection/GridReader.h"
#include "detection/Reduce.h"
#include "detection/RegionImage.h"
#include "detection/SecondOpinion.h"
#include "detection/Sharpen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <span>
#include <utility>

namespace quillmark {
namespace {

constexpr std::size_t smallPicture = 3'000'000; // pixels
constexpr std::size_t smallCopy = 1'500'000;    // of a frame that is larger itself
constexpr std::size_t tinyPicture = 250'000;
constexpr int earlyLooks = 8; // while a frame's rows come
constexpr std::size_t mostEarlyMarks = 40;
constexpr std::size_t mostEarlyTriangles = 3;
constexpr std::size_t mostPooled = 250;     // marks; among more, those of a look stay by themselves
constexpr std::size_t mostTriangles = 24;   // of a look
constexpr std::size_t mostPaired = 14;      // marks
constexpr std::size_t mostFitted = 800;     // marks
constexpr std::size_t mostForLibrary = 150; // marks
constexpr std::size_t mostTried = 100;      // triangles, of which frames without a code have few
// What may be spent on comparing marks with each other, one with one being the unit: a fifth of a
// second. Completing a pair takes as long as many.
constexpr std::size_t mostSpent = 300'000;
constexpr std::size_t mostEqualised = 4'000'000; // modules: about a second
constexpr std::size_t pairCost = 1'500;
constexpr int wholeSharpening = 8; // quarters

// Of an area that is busy like a code.
constexpr double densestSide = 250; // modules along a code, whichever way it is turned
constexpr double sparsestSide = 35;

/// The looks at a place that is busy like a code.
constexpr std::array<int, 3> regionSharpenings{0, 8, 14};
constexpr std::array<int, 4> regionScales{2, 4, 8, 1};
/// In large frames, on the copies that are there already.
constexpr std::array<int, 3> largeRegionScales{3, 9, 6};

double apart(const FinderMark &a, const FinderMark &b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

bool isSeenTwice(const FinderMark &mark)
{
    return mark.hits > 1;
}

bool areOne(const FinderTriangle &a, const FinderTriangle &b)
{
    const double near = 1.2 * std::min(a.module, b.module);
    return a.corner.isDark == b.corner.isDark && apart(a.corner, b.corner) < near &&
           ((apart(a.first, b.first) < near && apart(a.second, b.second) < near) ||
            (apart(a.first, b.second) < near && apart(a.second, b.first) < near));
}

} // namespace

bool FrameSearch::mayTryMore() const
{
    return !isOver() && m_tried.size() < mostTried && m_spent < mostSpent;
}

int FrameSearch::earlyEnd(int look) const
{
    return static_cast<int>(std::int64_t{m_frame.height} * look / earlyLooks);
}

bool FrameSearch::follow(LumaRows &rows)
{
    m_isFollowed = true;
    for (int i = 1; i <= earlyLooks && !isOver(); ++i) {
        if (!m_looks.follow(rows, earlyEnd(i))) {
            return false;
        }
        lookEarly(earlyEnd(i));
    }
    return true;
}

/// Looks for a large and clear code among the rows above `end`, which may be all that are there.
void FrameSearch::lookEarly(int end)
{
    if (m_looks.count() == 0) {
        return;
    }
    std::vector<FinderMark> marks = m_looks.marksSoFar(0);
    const int scale = m_looks.scale(0);
    for (FinderMark &mark : marks) {
        mark.x *= scale;
        mark.y *= scale;
        mark.module *= scale;
    }
    // What is looked at between two marks lies no farther out.
    constexpr double reach = 12; // modules
    std::erase_if(marks,
                  [&](const FinderMark &mark) { return mark.y + reach * mark.module >= end; });
    if (marks.size() == m_earlyMarks || marks.size() > mostEarlyMarks) {
        return;
    }
    m_earlyMarks = marks.size();
    for (const FinderTriangle &triangle : findTriangles(m_frame, marks, mostEarlyTriangles)) {
        const bool isThere = end == m_frame.height || RegionImage::lowestRow(triangle) < end;
        if (isThere && !isOver()) {
            tryTriangle(triangle);
        }
    }
}

void FrameSearch::run()
{
    // Whether it was followed or not must make no difference.
    for (int i = 1; i <= earlyLooks && !m_isFollowed && !isOver(); ++i) {
        m_looks.advance(earlyEnd(i));
        lookEarly(earlyEnd(i));
    }
    // With all rows there, the same patterns are known better.
    m_tried.clear();
    for (int i = 0; i < m_looks.count() && mayTryMore(); ++i) {
        const int scale = m_looks.scale(i);
        takeIn(m_looks.marks(i), m_looks.copy(scale), {0, 0}, scale);
    }
    const bool isLarge = m_pyramid.pixelsAt(1) > mostSearched;
    for (const int scale : isLarge ? std::span<const int>(largeRegionScales) : regionScales) {
        if (mayTryMore()) {
            lookAtRegions(scale);
        }
    }
    for (const int scale : isLarge ? std::span<const int>(largeRegionScales) : regionScales) {
        if (!isOver()) {
            lookForShapes(scale);
        }
    }
    if (!isOver()) {
        fitMarks();
    }
    if (mayTryMore()) {
        completePairs();
    }
    for (const QrSymbol &seen : m_symbols.unread()) {
        if (!isOver()) {
            askAgain(seen.corners);
        }
    }
    for (const int scale : {9, 3, 1}) {
        if (!isOver()) {
            lookAtWhole(scale);
        }
    }
    if (!isOver() && m_pyramid.pixelsAt(1) <= tinyPicture) {
        lookAtEnlarged();
    }
}

/// Looks harder where the frame is busy as a code is.
void FrameSearch::lookAtRegions(int scale)
{
    if (!m_pyramid.isScannedAt(scale) || m_pyramid.pixelsAt(scale) > mostSearched) {
        return;
    }
    const LumaView picture = m_pyramid.copy(scale);
    for (const PixelArea &area : m_pyramid.regions(scale)) {
        const PixelPoint corner{static_cast<double>(std::max(area.left, 0)),
                                static_cast<double>(std::max(area.top, 0))};
        const LumaView part = picture.cropped(area.left, area.top, area.width, area.height);
        for (const int sharpening : regionSharpenings) {
            if (mayTryMore()) {
                lookAtRegion(part, corner, scale, sharpening);
            }
        }
    }
}

void FrameSearch::lookAtRegion(const LumaView &part, PixelPoint corner, int scale, int sharpening)
{
    const LumaImage sharpened = sharpening == 0 ? LumaImage() : sharpen(part, sharpening);
    takeIn(scanForFinders(sharpening == 0 ? part : sharpened, 2), part, corner, scale);
}

/// Looks there for finder patterns as a whole, where the runs along rows show none.
void FrameSearch::lookForShapes(int scale)
{
    if (!m_pyramid.isScannedAt(scale) || m_pyramid.pixelsAt(scale) > mostSearched) {
        return;
    }
    const LumaView picture = m_pyramid.copy(scale);
    for (const PixelArea &area : m_pyramid.regions(scale)) {
        const PixelArea whole{area.left * scale, area.top * scale, area.width * scale,
                              area.height * scale};
        const auto isLike = [&whole](const PixelArea &known) { return areAlike(whole, known); };
        if (!isOver() && std::ranges::none_of(m_shapeAreas, isLike) && evensOut(picture, area)) {
            m_shapeAreas.push_back(whole);
            // The code takes up most of the area, turned some way.
            const double side = std::max(whole.width, whole.height) / areaShare;
            tryAligned(findFinderShapes(m_frame, whole, side / densestSide, side / sparsestSide));
        }
    }
}

/// Looks at all marks once more, with what their shape says of how they lie: among hundreds
/// that look like finder patterns, few look along each other's sides.
void FrameSearch::fitMarks()
{
    std::vector<FinderMark> marks = m_pool.marks();
    std::ranges::stable_sort(marks, std::ranges::greater{}, &FinderMark::hits);
    marks.resize(std::min(marks.size(), mostFitted));
    tryAligned(fitFinderMarks(m_frame, marks));
}

void FrameSearch::tryAligned(std::span<const FittedFinder> finders)
{
    for (const FinderTriangle &triangle : alignedTriangles(m_frame, finders, mostTriangles)) {
        if (!isOver()) {
            read(triangle);
        }
    }
}

/// Takes in what was seen on a part of the frame's copy that begins at a place of it.
void FrameSearch::takeIn(std::vector<FinderMark> marks, const LumaView &part, PixelPoint corner,
                         int scale)
{
    for (FinderMark &mark : marks) {
        mark.x = (mark.x + corner.x) * scale;
        mark.y = (mark.y + corner.y) * scale;
        mark.module *= scale;
    }
    m_pool.add(marks);
    std::vector<FinderMark> pooled = m_pool.marks();
    std::erase_if(pooled, [&](const FinderMark &mark) {
        const double x = mark.x / scale - corner.x;
        const double y = mark.y / scale - corner.y;
        return !(x >= 0 && y >= 0 && x <= part.width && y <= part.height);
    });
    tryTriangles(pooled.size() <= mostPooled ? pooled : marks);
}

void FrameSearch::tryTriangles(std::span<const FinderMark> marks)
{
    m_spent += marks.size() * marks.size();
    // All of them, though one may be the slate: another card may lie beside it.
    for (const FinderTriangle &triangle : findTriangles(m_frame, marks, mostTriangles)) {
        tryTriangle(triangle);
    }
}

void FrameSearch::tryTriangle(const FinderTriangle &triangle)
{
    if (m_tried.size() < mostTried && hasCodeTexture(m_frame, triangle)) {
        read(triangle);
    }
}

void FrameSearch::read(const FinderTriangle &triangle)
{
    const auto isTried = [&triangle](const FinderTriangle &other) {
        return areOne(triangle, other);
    };
    if (m_equalised > mostEqualised || std::ranges::any_of(m_tried, isTried) ||
        m_symbols.hasTextAt(triangle.middle())) {
        return;
    }
    m_tried.push_back(triangle);
    if (std::optional<QrSymbol> symbol = readGrid(m_frame, triangle, &m_equalised)) {
        m_symbols.add(std::move(*symbol));
    }
}

/// Where two of a code's finder patterns are known, looks for the third where it should be.
void FrameSearch::completePairs()
{
    std::vector<FinderMark> marks = m_pool.marks();
    std::erase_if(marks, std::not_fn(isSeenTwice));
    std::ranges::stable_sort(marks, std::ranges::greater{}, &FinderMark::hits);
    marks.resize(std::min(marks.size(), mostPaired));
    for (std::size_t i = 0; i < marks.size(); ++i) {
        for (std::size_t k = i + 1; k < marks.size(); ++k) {
            if (!mayTryMore()) {
                return;
            }
            m_spent += pairCost;
            for (const FinderTriangle &triangle : completedTriangles(m_frame, marks[i], marks[k])) {
                tryTriangle(triangle);
            }
        }
    }
}

/// Has another library look at a code that was seen and not understood.
void FrameSearch::askAgain(const SymbolCorners &corners)
{
    // As many modules as an estimate of their size takes: that of a code of moderate version.
    constexpr double modules = 80;
    const double side = std::hypot(corners[1].x - corners[0].x, corners[1].y - corners[0].y);
    if (auto text = askForSecondOpinion(m_frame, corners, side / modules)) {
        m_symbols.add({std::move(text), corners});
    }
}

/// The library's own search over the whole frame: it finds codes whose finder patterns
/// are damaged.
void FrameSearch::lookAtWhole(int scale)
{
    // It tries every three patterns, which takes seconds where hundreds look like one. In a large
    // frame it sees nothing where not one pattern was seen twice.
    const std::vector<FinderMark> &marks = m_pool.marks();
    const bool isHopeless =
        m_pyramid.pixelsAt(1) > mostSearched && std::ranges::none_of(marks, isSeenTwice);
    if (isHopeless || marks.size() > mostForLibrary || !m_pyramid.isScannedAt(scale) ||
        m_pyramid.pixelsAt(scale) > (scale == 1 ? smallPicture : smallCopy)) {
        return;
    }
    LumaImage picture = sharpen(m_pyramid.copy(scale), wholeSharpening);
    const QrEffort effort = scale == 1 ? QrEffort::thorough : QrEffort::quick;
    for (QrSymbol &symbol : readCopy({std::move(picture), 1.0 * scale}, effort)) {
        m_symbols.add(std::move(symbol));
    }
}

/// Modules of one or two pixels in a small picture.
void FrameSearch::lookAtEnlarged()
{
    for (const int factor : {2, 4}) {
        for (QrSymbol &symbol :
             readCopy({enlarge(m_frame, factor), 1.0 / factor}, QrEffort::thorough)) {
            m_symbols.add(std::move(symbol));
        }
    }
}

SymbolList searchFrame(const LumaView &frame)
{
    SymbolList found;
    try {
        if (!frame.isEmpty()) {
            FrameSearch(frame, found).run();
        }
    } catch (const std::exception &) {
        // Out of memory or of threads.
    }
    return found;
}

SymbolList searchFrame(LumaRows &rows)
{
    SymbolList found;
    try {
        if (rows.await(1) > 0) {
            FrameSearch search(rows.view(), found);
            if (search.follow(rows)) {
                search.run();
            }
        }
    } catch (const std::exception &) {
        // Out of memory or of threads.
    }
    return found;
}

} // namespace quillmark
