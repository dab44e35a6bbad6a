// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolGrid.h"

#include "detection/SymbolPattern.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace quillmark {
namespace {

constexpr double finderMiddle = 3.5; // modules from the corner
constexpr double leastTiming = 0.15;
constexpr double supposedWeight = 0.05;

double length(PixelPoint p)
{
    return std::hypot(p.x, p.y);
}

double distance(PixelPoint a, PixelPoint b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

/// The three finder patterns as they lie on the picture.
struct Finders {
    LocalFrame topLeft;
    LocalFrame topRight;
    LocalFrame bottomLeft;
};

LocalFrame startOf(const RegionImage &picture, const FinderMark &mark,
                   const FinderTriangle &triangle, double stretch)
{
    const auto step = [&](const FinderMark &end) {
        const double x = end.x - triangle.corner.x;
        const double y = end.y - triangle.corner.y;
        const double scale = stretch * mark.module / picture.scale() / std::hypot(x, y);
        return PixelPoint{x * scale, y * scale};
    };
    return {picture.fromFrame({mark.x, mark.y}), step(triangle.first), step(triangle.second), 0};
}

/// Light that has spread makes a pattern's dark parts, and with them its modules, look larger
/// or smaller than they are: several sizes are tried.
std::optional<LocalFrame> fitMark(const RegionImage &picture, const FinderMark &mark,
                                  const FinderTriangle &triangle)
{
    std::optional<LocalFrame> best;
    for (const double stretch : {1.0, 0.78, 1.25}) {
        const auto found = fitFinder(picture, startOf(picture, mark, triangle, stretch));
        if (found && (!best || found->score > best->score)) {
            best = found;
        }
        if (best && best->score > 0.85) {
            break;
        }
    }
    return best;
}

std::optional<Finders> fitFinders(const RegionImage &picture, const FinderTriangle &triangle)
{
    const auto fitted = [&](const FinderMark &mark) {
        auto frame = fitMark(picture, mark, triangle);
        if (!frame && mark.hits == 0) {
            frame = startOf(picture, mark, triangle, 1);
        }
        return frame;
    };
    const auto topLeft = fitted(triangle.corner);
    const auto topRight = topLeft ? fitted(triangle.first) : std::nullopt;
    const auto bottomLeft = topRight ? fitted(triangle.second) : std::nullopt;
    if (!bottomLeft) {
        return std::nullopt;
    }
    return Finders{*topLeft, *topRight, *bottomLeft};
}

double estimatedVersion(const Finders &finders)
{
    const double across = distance(finders.topLeft.middle, finders.topRight.middle) /
                          ((length(finders.topLeft.right) + length(finders.topRight.right)) / 2);
    const double down = distance(finders.topLeft.middle, finders.bottomLeft.middle) /
                        ((length(finders.topLeft.down) + length(finders.bottomLeft.down)) / 2);
    return ((across + down) / 2 + 7 - 17) / 4;
}

std::vector<GridKnot> finderKnots(const Finders &finders, int version)
{
    const double far = symbolSide(version) - finderMiddle;
    std::vector<GridKnot> knots;
    const auto add = [&](const LocalFrame &frame, double column, double row) {
        if (frame.score == 0) { // only supposed
            knots.push_back({{column, row}, frame.middle, supposedWeight});
            return;
        }
        knots.push_back({{column, row}, frame.middle, 1});
        // Farther out, what the fit says of its turn and stretch is less sure.
        for (const auto &[u, v] : {std::pair{-3.5, -3.5}, {3.5, -3.5}, {3.5, 3.5}, {-3.5, 3.5}}) {
            knots.push_back({{column + u, row + v}, frame.at(u, v), 0.25});
        }
    };
    add(finders.topLeft, finderMiddle, finderMiddle);
    add(finders.topRight, far, finderMiddle);
    add(finders.bottomLeft, finderMiddle, far);
    return knots;
}

/// How well dark and light alternate along the timing patterns: 1 is perfectly, 0 is by
/// chance.
double timingScore(const RegionImage &picture, const SymbolGrid &grid)
{
    double product = 0;
    double total = 0;
    const auto follow = [&](const auto &at) {
        for (int i = 8; i < grid.side() - 8; ++i) {
            const double rise = at(i) - (at(i - 1) + at(i + 1)) / 2;
            product += i % 2 == 0 ? -rise : rise;
            total += std::abs(rise);
        }
    };
    follow([&](int i) { return picture.at(grid.at(i + 0.5, 6.5)); });
    follow([&](int i) { return picture.at(grid.at(6.5, i + 0.5)); });
    return total > 0 ? product / total : 0;
}

/// What a symbol says of its version, where it can be understood: the version of which the
/// fewest bits have to be wrong.
std::optional<int> toldVersion(const RegionImage &picture, const SymbolGrid &grid)
{
    int best = 4; // the code tells apart what is up to three bits wrong
    std::optional<int> version;
    for (const bool mirrored : {false, true}) {
        std::array<float, 18> levels{};
        for (int i = 0; i < 18; ++i) {
            const double far = grid.side() - 11 + i % 3 + 0.5;
            const int line = i / 3;
            const double near = line + 0.5;
            levels[static_cast<std::size_t>(i)] =
                picture.at(mirrored ? grid.at(near, far) : grid.at(far, near));
        }
        const auto [least, most] = std::ranges::minmax(levels);
        std::uint32_t bits = 0;
        for (std::size_t i = 0; i < levels.size(); ++i) {
            bits |= levels[i] < (least + most) / 2 ? 1U << i : 0U;
        }
        for (int candidate = leastToldVersion; candidate <= mostVersion; ++candidate) {
            const int wrong = std::popcount(bits ^ versionBits(candidate));
            if (wrong < best) {
                best = wrong;
                version = candidate;
            }
        }
    }
    return version;
}

/// How a map from modules to pixels lies around a place.
template <typename Map>
LocalFrame frameAround(const Map &map, double column, double row)
{
    const PixelPoint left = map(column - 1, row);
    const PixelPoint right = map(column + 1, row);
    const PixelPoint up = map(column, row - 1);
    const PixelPoint down = map(column, row + 1);
    return {map(column, row),
            {(right.x - left.x) / 2, (right.y - left.y) / 2},
            {(down.x - up.x) / 2, (down.y - up.y) / 2},
            0};
}

/// What is left between a projection and the knots that it should go through, and between
/// and beyond them: at each place a plane through the rests, in which near knots count most
/// (moving least squares: Lancaster and Salkauskas, "Surfaces generated by moving least squares
/// methods", 1981). The turn of a bent card goes on where no knot is known yet.
class KnotRests
{
public:
    KnotRests(const Homography &plane, const std::vector<GridKnot> &knots) : m_knots(knots)
    {
        m_rests.reserve(knots.size());
        for (const GridKnot &knot : knots) {
            const PixelPoint mapped = plane.map(knot.module);
            m_rests.push_back({knot.pixel.x - mapped.x, knot.pixel.y - mapped.y});
        }
    }

    PixelPoint at(double column, double row) const
    {
        constexpr double near = 16;    // square modules within which knots count alike
        constexpr double flatness = 6; // square modules: holds the plane level where knots crowd
        Eigen::Matrix3d normal = Eigen::Matrix3d::Zero();
        Eigen::Matrix<double, 3, 2> right = Eigen::Matrix<double, 3, 2>::Zero();
        for (std::size_t i = 0; i < m_knots.size(); ++i) {
            const double x = m_knots[i].module.x - column;
            const double y = m_knots[i].module.y - row;
            const double closeness = 1 / (x * x + y * y + near);
            const double weight = m_knots[i].weight * closeness * closeness;
            const Eigen::Vector3d terms(1, x, y);
            normal.noalias() += weight * terms * terms.transpose();
            right.noalias() += weight * terms * Eigen::RowVector2d(m_rests[i].x, m_rests[i].y);
        }
        const double level = flatness * normal(0, 0);
        normal(1, 1) += level;
        normal(2, 2) += level;
        const Eigen::Matrix<double, 3, 2> plane = normal.ldlt().solve(right);
        return {plane(0, 0), plane(0, 1)};
    }

private:
    const std::vector<GridKnot> &m_knots;
    std::vector<PixelPoint> m_rests;
};

/// The grid around a place, from knots alone: cheaper than a grid for that one place.
LocalFrame frameAt(const Homography &plane, const std::vector<GridKnot> &knots, PixelPoint place)
{
    const KnotRests rests(plane, knots);
    return frameAround(
        [&](double column, double row) {
            const PixelPoint mapped = plane.map({column, row});
            const PixelPoint rest = rests.at(column, row);
            return PixelPoint{mapped.x + rest.x, mapped.y + rest.y};
        },
        place.x, place.y);
}

/// Finds the alignment patterns one after another, and grows the grid with each.
SymbolGrid grow(const RegionImage &picture, const SymbolGrid &grid)
{
    std::vector<PixelPoint> open;
    const std::vector<int> lines = alignmentLines(grid.version());
    for (const int row : lines) {
        for (const int column : lines) {
            const bool atFinder = (row == lines.front() && column == lines.front()) ||
                                  (row == lines.front() && column == lines.back()) ||
                                  (row == lines.back() && column == lines.front());
            if (!atFinder) {
                open.push_back({column + 0.5, row + 0.5});
            }
        }
    }
    std::vector<GridKnot> knots = grid.knots();
    Homography plane = grid.plane();
    while (!open.empty()) {
        const auto nearest = [&knots](PixelPoint place) {
            double least = 1e9;
            for (const GridKnot &knot : knots) {
                least = std::min(least, distance(knot.module, place));
            }
            return least;
        };
        const auto next = std::ranges::min_element(open, {}, nearest);
        const double reach = std::clamp(0.8 + 0.05 * nearest(*next), 1.0, 3.0);
        if (const auto found = findAlignment(picture, frameAt(plane, knots, *next), reach)) {
            knots.push_back({*next, found->middle, 1});
            plane = Homography::fit(knots).value_or(plane);
        }
        open.erase(next);
    }
    return SymbolGrid::through(grid.version(), std::move(knots)).value_or(grid);
}

} // namespace

std::optional<SymbolGrid> SymbolGrid::through(int version, std::vector<GridKnot> knots)
{
    const std::optional<Homography> plane = Homography::fit(knots);
    if (!plane) {
        return std::nullopt;
    }
    SymbolGrid grid;
    grid.m_version = version;
    grid.m_side = symbolSide(version);
    grid.m_knots = std::move(knots);
    grid.m_plane = *plane;
    grid.bend();
    return grid;
}

/// What is left between the projection and the knots, spread over cells.
void SymbolGrid::bend()
{
    m_cells = static_cast<int>(std::ceil(m_side / cellModules)) + 1;
    m_bending.resize(static_cast<std::size_t>(m_cells) * static_cast<std::size_t>(m_cells));
    const KnotRests rests(m_plane, m_knots);
    for (int row = 0; row < m_cells; ++row) {
        for (int column = 0; column < m_cells; ++column) {
            m_bending[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_cells) +
                      static_cast<std::size_t>(column)] =
                rests.at(column * cellModules, row * cellModules);
        }
    }
}

PixelPoint SymbolGrid::at(double column, double row) const
{
    PixelPoint place = m_plane.map({column, row});
    const double x = std::clamp(column / cellModules, 0.0, m_cells - 1.001);
    const double y = std::clamp(row / cellModules, 0.0, m_cells - 1.001);
    const int left = static_cast<int>(x);
    const int top = static_cast<int>(y);
    const double right = x - left;
    const double down = y - top;
    const PixelPoint *above = m_bending.data() +
                              static_cast<std::size_t>(top) * static_cast<std::size_t>(m_cells) +
                              static_cast<std::size_t>(left);
    const PixelPoint *below = above + m_cells;
    const auto mix = [&](double PixelPoint::*axis) {
        return (1 - down) * ((1 - right) * above[0].*axis + right * above[1].*axis) +
               down * ((1 - right) * below[0].*axis + right * below[1].*axis);
    };
    place.x += mix(&PixelPoint::x);
    place.y += mix(&PixelPoint::y);
    return place;
}

LocalFrame SymbolGrid::frameAt(double column, double row) const
{
    return frameAround([this](double x, double y) { return at(x, y); }, column, row);
}

std::vector<SymbolGrid> findGrids(const RegionImage &picture, const FinderTriangle &triangle)
{
    if (picture.isEmpty()) {
        return {};
    }
    const std::optional<Finders> finders = fitFinders(picture, triangle);
    if (!finders) {
        return {};
    }
    const double estimate = estimatedVersion(*finders);
    const double slack = 1.6 + 0.08 * estimate;
    const int least = std::max(leastVersion, static_cast<int>(std::ceil(estimate - slack)));
    const int most = std::min(mostVersion, static_cast<int>(std::floor(estimate + slack)));
    std::vector<std::pair<double, SymbolGrid>> ranked;
    for (int version = least; version <= most; ++version) {
        auto grid = SymbolGrid::through(version, finderKnots(*finders, version));
        if (!grid) {
            continue;
        }
        double score = timingScore(picture, *grid);
        // The version stands beside the finder patterns, where the grid is surest.
        if (version >= leastToldVersion && toldVersion(picture, *grid) == version) {
            score += 1;
        }
        if (score >= leastTiming) {
            ranked.emplace_back(score, std::move(*grid));
        }
    }
    std::ranges::stable_sort(ranked, std::ranges::greater{}, &std::pair<double, SymbolGrid>::first);
    constexpr std::size_t mostTried = 2;
    std::vector<SymbolGrid> grids;
    for (auto &[score, grid] : ranked) {
        if (grids.size() < mostTried && (grids.empty() || score > ranked.front().first - 0.5)) {
            grids.push_back(grow(picture, grid));
        }
    }
    return grids;
}

} // namespace quillmark
