// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderShapes.h"

#include "detection/PatternCorrelation.h"
#include "detection/PatternFit.h"
#include "detection/RegionImage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillmark {
namespace {

constexpr std::size_t mostPlaces = 40; // of each polarity

bool areOne(const LocalFrame &a, const LocalFrame &b)
{
    const double near = 2 * std::hypot(b.right.x, b.right.y);
    return std::hypot(a.middle.x - b.middle.x, a.middle.y - b.middle.y) < near;
}

FittedFinder finderOf(const RegionImage &picture, LocalFrame frame, bool isDark)
{
    const auto toPart = [&](PixelPoint &step) {
        step.x *= picture.scale();
        step.y *= picture.scale();
    };
    FittedFinder finder;
    const FinderLight light = finderLight(picture, frame);
    frame.middle = picture.toFrame(frame.middle);
    toPart(frame.right);
    toPart(frame.down);
    finder.frame = frame;
    finder.mark.x = frame.middle.x;
    finder.mark.y = frame.middle.y;
    finder.mark.module = (std::hypot(frame.right.x, frame.right.y) +
                          std::hypot(frame.down.x, frame.down.y)) /
                         2;
    finder.mark.isDark = isDark;
    finder.mark.contrast = light.contrast;
    finder.mark.threshold = isDark ? light.middle : 255 - light.middle;
    finder.mark.hits = 1;
    finder.mark.diagonals = 1;
    return finder;
}

} // namespace

std::vector<FittedFinder> findFinderShapes(const LumaView &part, double leastModule,
                                           double mostModule)
{
    const std::vector<PatternPlace> places =
        findPatternPlaces(part, leastModule, mostModule, mostPlaces);
    std::vector<FittedFinder> finders;
    for (const bool isDark : {true, false}) {
        FinderMark whole;
        whole.x = part.width / 2.0;
        whole.y = part.height / 2.0;
        whole.module = std::sqrt(leastModule * mostModule);
        whole.isDark = isDark;
        const RegionImage picture(part, whole, std::max(part.width, part.height));
        std::vector<LocalFrame> found;
        for (const PatternPlace &place : places) {
            if ((place.correlation > 0) != isDark || picture.isEmpty()) {
                continue;
            }
            const auto frame = fitTurnedFinder(picture, picture.fromFrame(place.middle),
                                               place.module / picture.scale());
            if (!frame) {
                continue;
            }
            const auto same = std::ranges::find_if(
                found, [&frame](const LocalFrame &known) { return areOne(*frame, known); });
            if (same == found.end()) {
                found.push_back(*frame);
            } else if (frame->score > same->score) {
                *same = *frame;
            }
        }
        for (const LocalFrame &frame : found) {
            finders.push_back(finderOf(picture, frame, isDark));
        }
    }
    return finders;
}

} // namespace quillmark
