// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderTriangle.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace quillmark {
namespace {

constexpr std::size_t mostTried = 80;
constexpr int leastStrength = 5;           // of three marks together
constexpr double largestModuleRatio = 1.7; // near and far end of a leaning card
constexpr double largestSideRatio = 1.9;
constexpr double largestCosine = 0.6; // of the angle between the sides: 53 to 127 degrees
// Between the middles of two finder patterns lie all modules but seven; blur and
// perspective make the estimate of a module uncertain by a quarter.
constexpr double leastModulesApart = 14 * 0.75;
constexpr double mostModulesApart = 170 * 1.25;

/// How sure a mark is. Grain makes marks of strength 1 by the dozen, and hardly others.
int strength(const FinderMark &mark)
{
    return std::min(mark.hits, 3) + mark.diagonals - 1;
}

double distance(const FinderMark &a, const FinderMark &b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

bool canBeNeighbours(const FinderMark &a, const FinderMark &b)
{
    const double ratio = a.module > b.module ? a.module / b.module : b.module / a.module;
    const double apart = 2.0 * distance(a, b) / (a.module + b.module);
    return ratio <= largestModuleRatio && apart >= leastModulesApart && apart <= mostModulesApart;
}

std::optional<FinderTriangle> triangleOf(const FinderMark &corner, const FinderMark &first,
                                         const FinderMark &second)
{
    const double firstSide = distance(corner, first);
    const double secondSide = distance(corner, second);
    const double sideRatio = std::max(firstSide, secondSide) / std::min(firstSide, secondSide);
    const double cosine = std::abs((first.x - corner.x) * (second.x - corner.x) +
                                   (first.y - corner.y) * (second.y - corner.y)) /
                          (firstSide * secondSide);
    const int sureness = strength(corner) + strength(first) + strength(second);
    if (sideRatio > largestSideRatio || cosine > largestCosine || sureness < leastStrength) {
        return std::nullopt;
    }
    const auto [least, most] = std::minmax({corner.module, first.module, second.module});
    FinderTriangle triangle{corner, first, second,
                            (corner.module + first.module + second.module) / 3, 0};
    triangle.misfit = (sideRatio - 1.0) + cosine + (most / least - 1.0) + 1.0 / sureness;
    return triangle;
}

/// The marks of one polarity that most rows crossed, best first.
std::vector<FinderMark> strongest(std::span<const FinderMark> marks, bool isDark)
{
    std::vector<FinderMark> chosen;
    std::ranges::copy_if(marks, std::back_inserter(chosen),
                         [isDark](const FinderMark &mark) { return mark.isDark == isDark; });
    std::ranges::stable_sort(chosen, std::ranges::greater{}, &FinderMark::hits);
    chosen.resize(std::min(chosen.size(), mostTried));
    return chosen;
}

void addTriangles(const std::vector<FinderMark> &marks, std::vector<FinderTriangle> &triangles)
{
    std::vector<const FinderMark *> neighbours;
    for (const FinderMark &corner : marks) {
        neighbours.clear();
        for (const FinderMark &other : marks) {
            if (canBeNeighbours(corner, other)) {
                neighbours.push_back(&other);
            }
        }
        for (std::size_t i = 0; i < neighbours.size(); ++i) {
            for (std::size_t k = i + 1; k < neighbours.size(); ++k) {
                if (const auto triangle = triangleOf(corner, *neighbours[i], *neighbours[k])) {
                    triangles.push_back(*triangle);
                }
            }
        }
    }
}

bool standInOnePlace(const FinderTriangle &a, const FinderTriangle &b)
{
    const double size = distance(b.first, b.second);
    return a.corner.isDark == b.corner.isDark &&
           std::hypot(a.middle().x - b.middle().x, a.middle().y - b.middle().y) < 0.15 * size &&
           std::hypot(a.corner.x - b.corner.x, a.corner.y - b.corner.y) < 0.15 * size;
}

} // namespace

std::vector<FinderTriangle> findTriangles(std::span<const FinderMark> marks, std::size_t most)
{
    std::vector<FinderTriangle> candidates;
    addTriangles(strongest(marks, true), candidates);
    addTriangles(strongest(marks, false), candidates);
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
