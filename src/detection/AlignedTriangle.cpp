// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/AlignedTriangle.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace quillmark {
namespace {

constexpr double mostLeaning = 0.3; // tangent of the angle to a pattern's side
constexpr double leastModules = 14 * 0.8;
constexpr double mostModules = 170 * 1.2;
constexpr double largestRatio = 1.45; // of two lengths in modules that should be one
constexpr double misfitOfScore = 2;   // for each of a score that is missing

double ratio(double a, double b)
{
    return a > b ? a / b : b / a;
}

/// Where a place lies as a pattern's own sides tell it.
struct Sight {
    bool alongRight = false; ///< rather than down
    double modules = 0;
    double leaning = 0; ///< tangent of the angle to the side
};

std::optional<Sight> sightOf(const LocalFrame &from, PixelPoint place)
{
    const double x = place.x - from.middle.x;
    const double y = place.y - from.middle.y;
    const double area = from.right.x * from.down.y - from.right.y * from.down.x;
    const double u = std::abs(x * from.down.y - y * from.down.x) / std::abs(area);
    const double v = std::abs(y * from.right.x - x * from.right.y) / std::abs(area);
    Sight sight;
    sight.alongRight = u > v;
    sight.modules = std::max(u, v);
    sight.leaning = std::min(u, v) / std::max(sight.modules, 1e-9);
    const bool isSide = sight.leaning < mostLeaning && sight.modules > leastModules &&
                        sight.modules < mostModules;
    return isSide ? std::optional(sight) : std::nullopt;
}

/// A pattern that another one sees along one of its sides.
struct Neighbour {
    std::size_t finder = 0;
    Sight sight;
    double modules = 0; ///< as both see it
    double misfit = 0;
};

std::vector<Neighbour> neighboursOf(std::span<const FittedFinder> finders, std::size_t corner)
{
    std::vector<Neighbour> neighbours;
    for (std::size_t i = 0; i < finders.size(); ++i) {
        if (i == corner || finders[i].mark.isDark != finders[corner].mark.isDark) {
            continue;
        }
        const auto there = sightOf(finders[corner].frame, finders[i].frame.middle);
        const auto back = there ? sightOf(finders[i].frame, finders[corner].frame.middle)
                                : std::nullopt;
        if (back && ratio(there->modules, back->modules) < largestRatio) {
            neighbours.push_back({i, *there, std::sqrt(there->modules * back->modules),
                                  there->leaning + back->leaning +
                                      ratio(there->modules, back->modules) - 1});
        }
    }
    return neighbours;
}

bool standInOnePlace(const FinderTriangle &a, const FinderTriangle &b)
{
    const double size = std::hypot(b.first.x - b.second.x, b.first.y - b.second.y);
    return a.corner.isDark == b.corner.isDark &&
           std::hypot(a.middle().x - b.middle().x, a.middle().y - b.middle().y) < 0.03 * size &&
           std::hypot(a.corner.x - b.corner.x, a.corner.y - b.corner.y) < 0.03 * size;
}

} // namespace

std::vector<FinderTriangle> alignedTriangles(std::span<const FittedFinder> finders,
                                             std::size_t most)
{
    std::vector<FinderTriangle> candidates;
    for (std::size_t corner = 0; corner < finders.size(); ++corner) {
        const std::vector<Neighbour> ends = neighboursOf(finders, corner);
        for (std::size_t i = 0; i < ends.size(); ++i) {
            for (std::size_t k = i + 1; k < ends.size(); ++k) {
                const double sides = ratio(ends[i].modules, ends[k].modules);
                if (ends[i].sight.alongRight == ends[k].sight.alongRight || sides > largestRatio) {
                    continue;
                }
                const FittedFinder &first = finders[ends[i].finder];
                const FittedFinder &second = finders[ends[k].finder];
                const double scores = finders[corner].frame.score + first.frame.score +
                                      second.frame.score;
                candidates.push_back(
                    {finders[corner].mark, first.mark, second.mark,
                     (finders[corner].mark.module + first.mark.module + second.mark.module) / 3,
                     ends[i].misfit + ends[k].misfit + sides - 1 + misfitOfScore * (3 - scores)});
            }
        }
    }
    std::ranges::stable_sort(candidates, {}, &FinderTriangle::misfit);
    std::vector<FinderTriangle> chosen;
    for (const FinderTriangle &candidate : candidates) {
        const auto isKnown = [&candidate](const FinderTriangle &known) {
            return standInOnePlace(candidate, known);
        };
        if (chosen.size() < most && std::ranges::none_of(chosen, isKnown)) {
            chosen.push_back(candidate);
        }
    }
    return chosen;
}

} // namespace quillmark
