// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderShapes.h"

#include "detection/PatternCorrelation.h"
#include "detection/PatternFit.h"
#include "detection/Reduce.h"
#include "detection/RegionImage.h"
#include "detection/WorkerThreads.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

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

/// Fits each, side by side, and takes in what fits in their order.
template <typename Fit>
void addEach(std::size_t count, const Fit &fit, std::vector<FittedFinder> &finders)
{
    std::vector<std::optional<FittedFinder>> fitted(count);
    shareOut(static_cast<int>(count), [&](int i) {
        const auto index = static_cast<std::size_t>(i);
        fitted[index] = fit(index);
    });
    for (const std::optional<FittedFinder> &finder : fitted) {
        if (finder) {
            addBetter(*finder, finders);
        }
    }
}

void addFitted(const LumaView &part, std::span<const PatternPlace> places, bool isDark,
               PixelPoint corner, int scale, std::vector<FittedFinder> &finders)
{
    const RegionImage picture(part, wholeOf(part, isDark), std::max(part.width, part.height));
    if (picture.isEmpty()) {
        return;
    }
    const auto fit = [&](std::size_t i) {
        std::optional<FittedFinder> finder;
        if (const auto frame = fitTurnedFinder(picture, places[i].middle, places[i].module)) {
            finder = finderOf(picture, *frame, isDark);
            place(*finder, corner, scale);
        }
        return finder;
    };
    addEach(places.size(), fit, finders);
}

void addShapes(const LumaView &part, double leastModule, double mostModule, PixelPoint corner,
               int scale, std::vector<FittedFinder> &finders)
{
    auto places = findPatternPlaces(part, leastModule, mostModule, mostPlaces);
    const auto light =
        std::stable_partition(places.begin(), places.end(),
                              [](const PatternPlace &each) { return each.correlation > 0; });
    const std::span all(places);
    const auto dark = static_cast<std::size_t>(light - places.begin());
    addFitted(part, all.first(dark), true, corner, scale, finders);
    addFitted(part, all.subspan(dark), false, corner, scale, finders);
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
    const auto fit = [&](std::size_t i) {
        const FinderMark &mark = marks[i];
        std::optional<FittedFinder> finder;
        const RegionImage picture(frame, mark, fittedReach * mark.module);
        if (!picture.isEmpty()) {
            if (const auto found = fitTurnedFinder(picture, picture.fromFrame({mark.x, mark.y}),
                                                   mark.module / picture.scale())) {
                finder = finderOf(picture, *found, mark.isDark);
            }
        }
        return finder;
    };
    addEach(marks.size(), fit, finders);
    return finders;
}

} // namespace quillmark
