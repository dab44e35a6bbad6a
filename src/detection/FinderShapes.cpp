// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderShapes.h"

#include "detection/PatternCorrelation.h"
#include "detection/PatternFit.h"
#include "detection/Reduce.h"
#include "detection/RegionImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillmark {
namespace {

constexpr std::size_t mostPlaces = 32; // of each polarity and octave
constexpr double smallestModule = 1.5; // pixels
// The modules on the copy of an octave, in pixels. Octaves overlap: a code that leans must fit.
constexpr double leastInOctave = 2.0;
constexpr double mostInOctave = 4.8;
constexpr double fittedReach = 9; // modules around a mark

bool areOne(const FittedFinder &a, const FittedFinder &b)
{
    const double near = 2 * std::min(a.mark.module, b.mark.module);
    return a.mark.isDark == b.mark.isDark &&
           std::hypot(a.mark.x - b.mark.x, a.mark.y - b.mark.y) < near;
}

void addBetter(const FittedFinder &finder, std::vector<FittedFinder> &finders)
{
    const auto same = std::ranges::find_if(
        finders, [&finder](const FittedFinder &known) { return areOne(finder, known); });
    if (same == finders.end()) {
        finders.push_back(finder);
    } else if (finder.frame.score > same->frame.score) {
        *same = finder;
    }
}

FittedFinder finderOf(const RegionImage &picture, LocalFrame frame, bool isDark)
{
    const FinderLight light = finderLight(picture, frame);
    const auto enlarge = [&picture](PixelPoint step) {
        return PixelPoint{step.x * picture.scale(), step.y * picture.scale()};
    };
    frame.middle = picture.toFrame(frame.middle);
    frame.right = enlarge(frame.right);
    frame.down = enlarge(frame.down);
    FittedFinder finder;
    finder.frame = frame;
    finder.mark.x = frame.middle.x;
    finder.mark.y = frame.middle.y;
    finder.mark.module =
        (std::hypot(frame.right.x, frame.right.y) + std::hypot(frame.down.x, frame.down.y)) / 2;
    finder.mark.isDark = isDark;
    finder.mark.contrast = light.contrast;
    finder.mark.threshold = isDark ? light.middle : 255 - light.middle;
    finder.mark.hits = 1;
    finder.mark.diagonals = 1;
    return finder;
}

/// A mark in the middle of a picture, to take all of it.
FinderMark wholeOf(const LumaView &picture, bool isDark)
{
    FinderMark mark;
    mark.x = picture.width / 2.0;
    mark.y = picture.height / 2.0;
    mark.module = 1;
    mark.isDark = isDark;
    return mark;
}

/// From pixels of a reduced part to those of the frame.
void place(FittedFinder &finder, PixelPoint corner, double scale)
{
    const auto enlarge = [scale](PixelPoint &step) { step = {step.x * scale, step.y * scale}; };
    enlarge(finder.frame.middle);
    enlarge(finder.frame.right);
    enlarge(finder.frame.down);
    finder.frame.middle.x += corner.x;
    finder.frame.middle.y += corner.y;
    finder.mark.x = finder.frame.middle.x;
    finder.mark.y = finder.frame.middle.y;
    finder.mark.module *= scale;
}

void addShapes(const LumaView &part, double leastModule, double mostModule, PixelPoint corner,
               int scale, std::vector<FittedFinder> &finders)
{
    const auto places = findPatternPlaces(part, leastModule, mostModule, mostPlaces);
    for (const bool isDark : {true, false}) {
        const RegionImage picture(part, wholeOf(part, isDark), std::max(part.width, part.height));
        for (const PatternPlace &each : places) {
            if ((each.correlation > 0) == isDark && !picture.isEmpty()) {
                if (const auto frame = fitTurnedFinder(picture, each.middle, each.module)) {
                    FittedFinder finder = finderOf(picture, *frame, isDark);
                    place(finder, corner, scale);
                    addBetter(finder, finders);
                }
            }
        }
    }
}

} // namespace

std::vector<FittedFinder> findFinderShapes(const LumaView &frame, const PixelArea &area,
                                           double leastModule, double mostModule)
{
    const PixelPoint corner{static_cast<double>(std::max(area.left, 0)),
                            static_cast<double>(std::max(area.top, 0))};
    const LumaView part = frame.cropped(area.left, area.top, area.width, area.height);
    std::vector<FittedFinder> finders;
    for (int scale = 1; leastInOctave * scale < mostModule; scale *= 2) {
        const double least =
            std::max(leastModule / scale, scale == 1 ? smallestModule : leastInOctave);
        const double most = std::min(mostModule / scale, mostInOctave);
        if (least < most && std::min(part.width, part.height) > scale) {
            addShapes(scale == 1 ? part : LumaView(reduceByBox(part, scale)), least, most, corner,
                      scale, finders);
        }
    }
    return finders;
}

std::vector<FittedFinder> fitFinderMarks(const LumaView &frame, std::span<const FinderMark> marks)
{
    std::vector<FittedFinder> finders;
    for (const FinderMark &mark : marks) {
        const RegionImage picture(frame, mark, fittedReach * mark.module);
        if (!picture.isEmpty()) {
            if (const auto found = fitTurnedFinder(picture, picture.fromFrame({mark.x, mark.y}),
                                                   mark.module / picture.scale())) {
                addBetter(finderOf(picture, *found, mark.isDark), finders);
            }
        }
    }
    return finders;
}

} // namespace quillmark
