// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/AlignedTriangle.h"

#include "detection/TimingCurve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

namespace quillmark {
namespace {

constexpr std::size_t mostNeighbours = 24;
constexpr std::size_t mostCandidates = 500;
constexpr double onePlace = 0.03;   // of the distance between a triangle's ends
constexpr double mostLeaning = 0.4; // tangent of the angle to a pattern's side
constexpr double leastModules = 14 * 0.8;
constexpr double mostModules = 170 * 1.2;
constexpr double largestRatio = 1.7;     // of two lengths in modules that should be one
constexpr double largestModuleRatio = 2; // of patterns at the near and the far end
constexpr double largestCosine = 0.6;    // of the angle between the sides: 53 to 127 degrees
// Of the timing patterns, at most 1 each. By chance it is about 0.1.
constexpr double leastTiming = 0.15;
constexpr double leastTimingOfTwo = 0.5;
constexpr double leastTimingOfOne = 0.55; // where it is all there is
constexpr double misfitOfSupposed = 1;
constexpr double misfitOfVersions = 0.3; // where the two sides tell different ones
constexpr double versionSlack = 5;       // modules
constexpr double versionSlackShare = 0.08;

double ratio(double a, double b)
{
    return a > b ? a / b : b / a;
}

/// A place as a pattern's own sides tell it.
struct Sight {
    PixelPoint along;  ///< one module, towards the place
    PixelPoint across; ///< one module to its left or right
    double modules = 0;
    double leaning = 0; ///< tangent of the angle to the side
};

std::optional<Sight> sightOf(const LocalFrame &from, PixelPoint place)
{
    const double x = place.x - from.middle.x;
    const double y = place.y - from.middle.y;
    const double area = from.right.x * from.down.y - from.right.y * from.down.x;
    const double u = (x * from.down.y - y * from.down.x) / area;
    const double v = (y * from.right.x - x * from.right.y) / area;
    const bool alongRight = std::abs(u) > std::abs(v);
    const double modules = alongRight ? u : v;
    const double sign = modules > 0 ? 1 : -1;
    const PixelPoint axis = alongRight ? from.right : from.down;
    Sight sight;
    sight.along = {sign * axis.x, sign * axis.y};
    sight.across = alongRight ? from.down : from.right;
    sight.modules = std::abs(modules);
    sight.leaning = std::abs(alongRight ? v : u) / std::max(sight.modules, 1e-9);
    const bool isSide =
        sight.leaning < mostLeaning && sight.modules > leastModules && sight.modules < mostModules;
    return isSide ? std::optional(sight) : std::nullopt;
}

PixelPoint turnedTowards(PixelPoint step, PixelPoint wanted)
{
    return step.x * wanted.x + step.y * wanted.y < 0 ? PixelPoint{-step.x, -step.y} : step;
}

/// A pattern that another one sees along one of its sides.
struct Neighbour {
    std::size_t finder = 0;
    PixelPoint along;   ///< at the one that sees it
    double modules = 0; ///< as both see it
    double misfit = 0;
    /// The timing patterns to either side of the line between the two, that towards the
    /// seeing one's step across first, and their lengths.
    std::array<double, 2> timing{};
    std::array<int, 2> timedModules{};
    PixelPoint across;
};

class NeighbourSearch
{
public:
    NeighbourSearch(const LumaView &picture, std::span<const FittedFinder> finders)
        : m_picture(picture), m_finders(finders)
    {}

    std::vector<Neighbour> of(std::size_t corner) const
    {
        std::vector<Neighbour> neighbours;
        for (std::size_t i = 0; i < m_finders.size(); ++i) {
            if (i != corner && m_finders[i].mark.isDark == m_finders[corner].mark.isDark &&
                ratio(m_finders[i].mark.module, m_finders[corner].mark.module) <
                    largestModuleRatio) {
                if (const auto neighbour = neighbourOf(corner, i)) {
                    neighbours.push_back(*neighbour);
                }
            }
        }
        // On a lattice of patterns each has dozens.
        std::ranges::stable_sort(neighbours, {}, [](const Neighbour &neighbour) {
            return neighbour.misfit - std::max(neighbour.timing[0], neighbour.timing[1]);
        });
        neighbours.resize(std::min(neighbours.size(), mostNeighbours));
        return neighbours;
    }

private:
    std::optional<Neighbour> neighbourOf(std::size_t corner, std::size_t other) const
    {
        const LocalFrame &here = m_finders[corner].frame;
        const LocalFrame &there = m_finders[other].frame;
        const auto to = sightOf(here, there.middle);
        const auto back = to ? sightOf(there, here.middle) : std::nullopt;
        if (!back || ratio(to->modules, back->modules) > largestRatio) {
            return std::nullopt;
        }
        Neighbour neighbour;
        neighbour.finder = other;
        neighbour.along = to->along;
        neighbour.across = to->across;
        neighbour.modules = std::sqrt(to->modules * back->modules);
        neighbour.misfit = to->leaning + back->leaning + ratio(to->modules, back->modules) - 1;
        for (std::size_t side = 0; side < 2; ++side) {
            findTiming(*to, *back, corner, other, side, neighbour);
        }
        return std::max(neighbour.timing[0], neighbour.timing[1]) > leastTiming
                   ? std::optional(neighbour)
                   : std::nullopt;
    }

    /// The version near the estimate whose timing pattern is seen best.
    void findTiming(const Sight &to, const Sight &back, std::size_t corner, std::size_t other,
                    std::size_t side, Neighbour &neighbour) const
    {
        const double sign = side == 0 ? 1 : -1;
        const SideEnd from{
            m_finders[corner].frame.middle, to.along, {sign * to.across.x, sign * to.across.y}};
        const SideEnd end{m_finders[other].frame.middle,
                          {-back.along.x, -back.along.y},
                          turnedTowards(back.across, from.inward)};
        const double polarity = m_finders[corner].mark.isDark ? 1 : -1;
        const double slack = versionSlack + versionSlackShare * neighbour.modules;
        const int least =
            std::max(static_cast<int>(std::ceil((neighbour.modules - slack - 10) / 4)), 1);
        const int most =
            std::min(static_cast<int>(std::floor((neighbour.modules + slack - 10) / 4)), 40);
        for (int version = least; version <= most; ++version) {
            const int modules = 10 + 4 * version;
            const double timing = polarity * timingAlong(m_picture, from, end, modules);
            if (timing > neighbour.timing[side]) {
                neighbour.timing[side] = timing;
                neighbour.timedModules[side] = modules;
            }
        }
    }

    const LumaView &m_picture;
    std::span<const FittedFinder> m_finders;
};

/// The side of a neighbour on which another one is.
std::size_t sideTowards(const Neighbour &neighbour, const Neighbour &other)
{
    return neighbour.across.x * other.along.x + neighbour.across.y * other.along.y > 0 ? 0 : 1;
}

/// How badly two neighbours of a corner make a code; nothing where they do not.
std::optional<double> misfitOf(const Neighbour &first, const Neighbour &second)
{
    const double product = first.along.x * second.along.x + first.along.y * second.along.y;
    const double cosine = std::abs(product) / (std::hypot(first.along.x, first.along.y) *
                                               std::hypot(second.along.x, second.along.y));
    const double sides = ratio(first.modules, second.modules);
    if (cosine > largestCosine || sides > largestRatio) {
        return std::nullopt;
    }
    const std::size_t one = sideTowards(first, second);
    const std::size_t other = sideTowards(second, first);
    const double timing = first.timing[one] + second.timing[other];
    if (timing < leastTimingOfTwo) {
        return std::nullopt;
    }
    const double versions =
        first.timedModules[one] == second.timedModules[other] ? 0 : misfitOfVersions;
    return versions + (first.misfit + second.misfit + sides - 1) / 2 - timing;
}

/// The triangle of two patterns with a clear timing pattern between them whose third is spoiled.
std::optional<FinderTriangle> supposedTriangle(const FittedFinder &corner, const FinderMark &first,
                                               const Neighbour &neighbour)
{
    const std::size_t side = neighbour.timing[0] > neighbour.timing[1] ? 0 : 1;
    if (neighbour.timing[side] < leastTimingOfOne) {
        return std::nullopt;
    }
    const double modules = (side == 0 ? 1 : -1) * neighbour.timedModules[side];
    FinderMark second = corner.mark;
    second.x += modules * neighbour.across.x;
    second.y += modules * neighbour.across.y;
    second.hits = 0;
    return FinderTriangle{corner.mark, first, second, (corner.mark.module + first.module) / 2,
                          misfitOfSupposed + neighbour.misfit - neighbour.timing[side]};
}

} // namespace

std::vector<FinderTriangle>
alignedTriangles(const LumaView &picture, std::span<const FittedFinder> finders, std::size_t most)
{
    const NeighbourSearch search(picture, finders);
    std::vector<FinderTriangle> candidates;
    for (std::size_t corner = 0; corner < finders.size(); ++corner) {
        const std::vector<Neighbour> ends = search.of(corner);
        if (candidates.size() > 4 * mostCandidates) {
            keepBest(candidates, mostCandidates);
        }
        for (std::size_t i = 0; i < ends.size(); ++i) {
            if (const auto supposed =
                    supposedTriangle(finders[corner], finders[ends[i].finder].mark, ends[i])) {
                candidates.push_back(*supposed);
            }
            for (std::size_t k = i + 1; k < ends.size(); ++k) {
                if (const auto misfit = misfitOf(ends[i], ends[k])) {
                    const FinderMark &first = finders[ends[i].finder].mark;
                    const FinderMark &second = finders[ends[k].finder].mark;
                    const FinderMark &mark = finders[corner].mark;
                    candidates.push_back({mark, first, second,
                                          (mark.module + first.module + second.module) / 3,
                                          *misfit});
                }
            }
        }
    }
    keepBest(candidates, mostCandidates);
    return inDifferentPlaces(candidates, onePlace, most);
}

} // namespace quillmark
