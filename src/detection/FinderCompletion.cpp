// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderCompletion.h"

#include "detection/CodeTexture.h"
#include "detection/PatternFit.h"
#include "detection/RegionImage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace quillmark {
namespace {

// How far the third pattern may be from where an upright code has it.
constexpr double reachShare = 0.16; // of the side
constexpr double leastReach = 4;    // modules
constexpr double mostReach = 12;
constexpr double patternReach = 6; // modules from a pattern's middle that are looked at with it

/// A triangle of which one pattern is only supposed to be where it is.
struct Supposed {
    FinderTriangle triangle;
    FinderMark FinderTriangle::*third = nullptr;
    PixelPoint right; ///< along a side of the code, as long as a module
};

/// The three that two marks may belong to, on one side of the line between them.
std::array<Supposed, 3> supposedTriangles(const FinderMark &first, const FinderMark &second,
                                          double side)
{
    const double x = second.x - first.x;
    const double y = second.y - first.y;
    const PixelPoint across{-side * y, side * x};
    const double module = (first.module + second.module) / 2;
    const double scale = module / std::hypot(x, y);
    const PixelPoint along{x * scale, y * scale};
    // Where the two marks end a diagonal, the sides are turned by half a right angle.
    const PixelPoint turned{(along.x - side * along.y) / std::sqrt(2.0),
                            (along.y + side * along.x) / std::sqrt(2.0)};
    const auto markAt = [&](double atX, double atY) {
        FinderMark mark = first;
        mark.x = atX;
        mark.y = atY;
        mark.module = module;
        return mark;
    };
    const FinderMark besideFirst = markAt(first.x + across.x, first.y + across.y);
    const FinderMark besideSecond = markAt(second.x + across.x, second.y + across.y);
    const FinderMark between =
        markAt((first.x + second.x + across.x) / 2, (first.y + second.y + across.y) / 2);
    return {{{{first, second, besideFirst, module, 0}, &FinderTriangle::second, along},
             {{second, first, besideSecond, module, 0}, &FinderTriangle::second, along},
             {{between, first, second, module, 0}, &FinderTriangle::corner, turned}}};
}

/// The triangle with its third pattern where that is found.
std::optional<FinderTriangle> completed(const LumaView &frame, const Supposed &supposed)
{
    const FinderTriangle &triangle = supposed.triangle;
    if (!hasCodeTexture(frame, triangle)) {
        return std::nullopt;
    }
    const FinderMark &third = triangle.*supposed.third;
    const double side =
        std::hypot(triangle.first.x - triangle.corner.x, triangle.first.y - triangle.corner.y);
    const double reach = std::clamp(reachShare * side / triangle.module, leastReach, mostReach);
    const RegionImage picture(frame, third, (reach + patternReach) * triangle.module);
    if (picture.isEmpty()) {
        return std::nullopt;
    }
    const PixelPoint right{supposed.right.x / picture.scale(), supposed.right.y / picture.scale()};
    const LocalFrame start{picture.fromFrame({third.x, third.y}), right, {-right.y, right.x}, 0};
    const std::optional<LocalFrame> pattern = findFinder(picture, start, reach);
    if (!pattern) {
        return std::nullopt;
    }
    FinderTriangle found = triangle;
    const PixelPoint middle = picture.toFrame(pattern->middle);
    (found.*supposed.third).x = middle.x;
    (found.*supposed.third).y = middle.y;
    return found;
}

} // namespace

std::vector<FinderTriangle> completedTriangles(const LumaView &frame, const FinderMark &first,
                                               const FinderMark &second)
{
    if (first.isDark != second.isDark || !canBeNeighbours(first, second)) {
        return {};
    }
    std::vector<FinderTriangle> found;
    for (const double side : {1.0, -1.0}) {
        for (const Supposed &supposed : supposedTriangles(first, second, side)) {
            if (const auto triangle = completed(frame, supposed)) {
                found.push_back(*triangle);
            }
        }
    }
    return found;
}

} // namespace quillmark
