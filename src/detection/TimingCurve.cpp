// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TimingCurve.h"

#include "detection/MeanLevel.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace quillmark {
namespace {

constexpr double lineOffset = 3;  // modules from a finder pattern's middle to the timing pattern
constexpr double firstModule = 4; // along it, from the finder's middle to the separator's
constexpr int mostModules = 177;

} // namespace

double timingAlong(const LumaView &picture, const SideEnd &from, const SideEnd &to, int modules)
{
    const auto on = [](const SideEnd &end) {
        return PixelPoint{end.middle.x + lineOffset * end.inward.x,
                          end.middle.y + lineOffset * end.inward.y};
    };
    const PixelPoint start = on(from);
    const PixelPoint end = on(to);
    const double startModule = std::hypot(from.along.x, from.along.y);
    const double endModule = std::hypot(to.along.x, to.along.y);
    std::array<double, mostModules> levels{};
    // From the separator of one pattern to that of the other, which are light.
    const int count = modules - 7;
    if (count < 5 || count > mostModules) {
        return 0;
    }
    for (int i = 0; i < count; ++i) {
        // A cubic with the direction and the speed of both ends (Hermite).
        const double t = (firstModule + i) / modules;
        const double s = 1 - t;
        const double atStart = s * s * (1 + 2 * t);
        const double atEnd = t * t * (1 + 2 * s);
        const double ofStart = s * s * t * modules;
        const double ofEnd = -t * t * s * modules;
        const double x =
            atStart * start.x + atEnd * end.x + ofStart * from.along.x + ofEnd * to.along.x;
        const double y =
            atStart * start.y + atEnd * end.y + ofStart * from.along.y + ofEnd * to.along.y;
        if (!(x >= 0 && y >= 0 && x < picture.width && y < picture.height)) {
            return 0;
        }
        levels[static_cast<std::size_t>(i)] =
            meanLevel(picture, x, y, s * startModule + t * endModule);
    }
    double product = 0;
    double total = 0;
    for (std::size_t i = 1; i + 1 < static_cast<std::size_t>(count); ++i) {
        const double rise = levels[i] - (levels[i - 1] + levels[i + 1]) / 2;
        product += i % 2 == 0 ? rise : -rise;
        total += std::abs(rise);
    }
    return total > 0 ? product / total : 0;
}

} // namespace quillmark
