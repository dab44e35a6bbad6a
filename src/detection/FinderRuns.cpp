// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderRuns.h"

#include <cmath>

namespace quillmark {

std::optional<float> finderModule(const FinderRuns &runs)
{
    const float total = runs[0] + runs[1] + runs[2] + runs[3] + runs[4];
    const float module = total / 7.0F;
    const float slack = 0.6F * module;
    const bool fits = std::abs(runs[2] - 3.0F * module) < 1.2F * module &&
                      std::abs(runs[0] - module) < slack && std::abs(runs[1] - module) < slack &&
                      std::abs(runs[3] - module) < slack && std::abs(runs[4] - module) < slack;
    return fits ? std::optional(module) : std::nullopt;
}

namespace {

// By how much the modules of one line may differ from those of another.
constexpr float mostRatio = 1.7F;
// How far from the middle a pattern may end, in modules.
constexpr float farthest = 6.5F;

// What no pattern has whose modules differ by no more, in modules: most places are no patterns,
// and show it at the first crossings.
constexpr float leastMiddle = 1.8F / mostRatio - 0.02F;
constexpr float mostMiddle = 4.2F * mostRatio + 0.02F;
constexpr float leastOuter = 0.4F / mostRatio - 0.02F;
constexpr float mostOuter = 1.6F * mostRatio + 0.02F;

/// Goes on to the next crossing by a run as a ring of the pattern has it.
bool goOnByRing(LineWalk &walk, float module)
{
    return walk.goOn() && walk.run() > leastOuter * module && walk.run() < mostOuter * module;
}

} // namespace

std::optional<FinderCrossing> crossFinder(const PixelLine &line, bool isDark, float threshold,
                                          float module)
{
    if ((static_cast<float>(line.at(0)) < threshold) != isDark) {
        return std::nullopt;
    }
    LineWalk back(line, -1, threshold, farthest * module);
    LineWalk forth(line, 1, threshold, farthest * module);
    if (!back.goOn() || !forth.goOn()) {
        return std::nullopt;
    }
    const float offset = (forth.crossing() - back.crossing()) / 2.0F;
    FinderRuns runs{};
    runs[2] = back.crossing() + forth.crossing();
    if (runs[2] < leastMiddle * module || runs[2] > mostMiddle * module ||
        !goOnByRing(back, module) || !goOnByRing(forth, module)) {
        return std::nullopt;
    }
    runs[1] = back.run();
    runs[3] = forth.run();
    if (!goOnByRing(back, module) || !goOnByRing(forth, module)) {
        return std::nullopt;
    }
    runs[0] = back.run();
    runs[4] = forth.run();
    const std::optional<float> found = finderModule(runs);
    if (!found || *found > mostRatio * module || module > mostRatio * *found) {
        return std::nullopt;
    }
    return FinderCrossing{offset, *found};
}

} // namespace quillmark
