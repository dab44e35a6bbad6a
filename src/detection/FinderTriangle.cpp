// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderTriangle.h"

#include "detection/TimingLine.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

namespace quillmark {
namespace {

// Pictures full of what looks like finder patterns must not take longer than they are worth:
// of each polarity so many marks are tried, and with each so many others.
constexpr std::size_t mostTried = 80;
constexpr std::size_t mostTimed = 500;
constexpr std::size_t mostNeighbours = 32;
constexpr std::size_t mostCandidates = 500; // triangles of each kind that are compared
constexpr double onePlace = 0.15;           // of the distance between a triangle's ends
constexpr int leastStrength = 5;            // of three marks together
constexpr double largestModuleRatio = 1.7;  // near and far end of a leaning card
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
std::vector<FinderMark> strongest(std::span<const FinderMark> marks, bool isDark, std::size_t most)
{
    std::vector<FinderMark> chosen;
    std::ranges::copy_if(marks, std::back_inserter(chosen),
                         [isDark](const FinderMark &mark) { return mark.isDark == isDark; });
    std::ranges::stable_sort(chosen, std::ranges::greater{}, &FinderMark::hits);
    chosen.resize(std::min(chosen.size(), most));
    return chosen;
}

/// For each mark the first others that it can be a neighbour of.
template <typename AreNeighbours>
std::vector<std::vector<std::size_t>> neighboursOf(const std::vector<FinderMark> &marks,
                                                   const AreNeighbours &areNeighbours)
{
    std::vector<std::vector<std::size_t>> neighbours(marks.size());
    for (std::size_t i = 0; i < marks.size(); ++i) {
        for (std::size_t k = i + 1; k < marks.size(); ++k) {
            if (neighbours[i].size() < mostNeighbours && neighbours[k].size() < mostNeighbours &&
                canBeNeighbours(marks[i], marks[k]) && areNeighbours(marks[i], marks[k])) {
                neighbours[i].push_back(k);
                neighbours[k].push_back(i);
            }
        }
    }
    return neighbours;
}

/// The best triangles of marks that are neighbours two by two, best first.
template <typename AreNeighbours>
void addTriangles(const std::vector<FinderMark> &marks, const AreNeighbours &areNeighbours,
                  std::vector<FinderTriangle> &triangles)
{
    const auto neighbours = neighboursOf(marks, areNeighbours);
    for (std::size_t corner = 0; corner < marks.size(); ++corner) {
        const std::vector<std::size_t> &ends = neighbours[corner];
        for (std::size_t i = 0; i < ends.size(); ++i) {
            for (std::size_t k = i + 1; k < ends.size(); ++k) {
                if (const auto triangle =
                        triangleOf(marks[corner], marks[ends[i]], marks[ends[k]])) {
                    triangles.push_back(*triangle);
                }
            }
        }
        if (triangles.size() > 4 * mostCandidates) {
            keepBest(triangles, mostCandidates);
        }
    }
    keepBest(triangles, mostCandidates);
}

bool standInOnePlace(const FinderTriangle &a, const FinderTriangle &b, double near)
{
    const double reach = near * distance(b.first, b.second);
    return a.corner.isDark == b.corner.isDark &&
           std::hypot(a.middle().x - b.middle().x, a.middle().y - b.middle().y) < reach &&
           distance(a.corner, b.corner) < reach;
}

} // namespace

bool canBeNeighbours(const FinderMark &a, const FinderMark &b)
{
    const double ratio = a.module > b.module ? a.module / b.module : b.module / a.module;
    const double apart = 2.0 * distance(a, b) / (a.module + b.module);
    return ratio <= largestModuleRatio && apart >= leastModulesApart && apart <= mostModulesApart;
}

std::vector<FinderTriangle> findTriangles(const LumaView &picture,
                                          std::span<const FinderMark> marks, std::size_t most)
{
    const auto isTimed = [&picture](const FinderMark &a, const FinderMark &b) {
        return hasTimingLine(picture, a, b);
    };
    const auto always = [](const FinderMark &, const FinderMark &) { return true; };
    std::vector<FinderTriangle> candidates;
    std::vector<FinderTriangle> others;
    for (const bool isDark : {true, false}) {
        addTriangles(strongest(marks, isDark, mostTimed), isTimed, candidates);
        addTriangles(strongest(marks, isDark, mostTried), always, others);
    }
    candidates.insert(candidates.end(), others.begin(), others.end());

    return inDifferentPlaces(candidates, onePlace, most);
}

void keepBest(std::vector<FinderTriangle> &triangles, std::size_t most)
{
    std::ranges::stable_sort(triangles, {}, &FinderTriangle::misfit);
    if (triangles.size() > most) {
        triangles.erase(triangles.begin() + static_cast<std::ptrdiff_t>(most), triangles.end());
    }
}

std::vector<FinderTriangle> inDifferentPlaces(std::span<const FinderTriangle> triangles,
                                              double near, std::size_t most)
{
    std::vector<FinderTriangle> chosen;
    for (const FinderTriangle &triangle : triangles) {
        const auto isHere = [&](const FinderTriangle &known) {
            return standInOnePlace(triangle, known, near);
        };
        if (chosen.size() < most && std::ranges::none_of(chosen, isHere)) {
            chosen.push_back(triangle);
        }
    }
    return chosen;
}

} // namespace quillmark
