// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TimingLine.h"

#include <algorithm>
#include <cmath>

namespace quillmark {
namespace {

constexpr double offModules = 3;    // from a pattern's middle to the timing line
constexpr double firstModule = 4.5; // along it: behind the pattern and its separator
constexpr double samplesPerModule = 3;
constexpr double mostSteps = 1000;
constexpr double hysteresis = 0.12;   // of the patterns' contrast, to both sides
constexpr double leastChanges = 0.75; // to a module, of one
constexpr double mostChanges = 1.2;
// Most lines have no pattern: they are left where so much of what should have come is missing.
constexpr double lookEvery = 3;    // modules
constexpr double leastSoFar = 0.6; // changes to a module
constexpr double slackSoFar = 1;   // changes

bool alternates(const LumaView &picture, const FinderMark &from, const FinderMark &to, double side)
{
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    const double alongX = (to.x - from.x) / length;
    const double alongY = (to.y - from.y) / length;
    const double module = (from.module + to.module) / 2;
    const double end = length - firstModule * to.module;
    const double band = hysteresis * std::min(from.contrast, to.contrast);
    const double step = module / samplesPerModule;
    int changes = 0;
    int last = 0;
    const double start = firstModule * from.module;
    // Marks that stand apart as those of a code may have no more than some 200 modules between.
    const int steps = static_cast<int>(std::ceil(std::clamp((end - start) / step, 0.0, mostSteps)));
    double nextLook = 2 * lookEvery * module;
    for (int i = 0; i < steps; ++i) {
        const double passed = i * step;
        const double along = start + passed;
        const double share = along / length;
        const double off = side * offModules * (from.module + share * (to.module - from.module));
        const double x = from.x + along * alongX - off * alongY;
        const double y = from.y + along * alongY + off * alongX;
        if (!(x >= 0 && y >= 0 && x < picture.width && y < picture.height)) {
            return false;
        }
        const double level = picture.row(static_cast<int>(y))[static_cast<int>(x)] -
                             (from.threshold + share * (to.threshold - from.threshold));
        const int here = level > band ? 1 : (level < -band ? -1 : last);
        changes += here != last && last != 0 ? 1 : 0;
        last = here;
        if (passed > nextLook) {
            nextLook += lookEvery * module;
            if (changes < leastSoFar * passed / module - slackSoFar) {
                return false;
            }
        }
    }
    const double modules = steps / samplesPerModule;
    return modules >= 4 && changes >= leastChanges * modules && changes <= mostChanges * modules;
}

} // namespace

bool hasTimingLine(const LumaView &picture, const FinderMark &from, const FinderMark &to)
{
    return alternates(picture, from, to, 1) || alternates(picture, from, to, -1);
}

} // namespace quillmark
