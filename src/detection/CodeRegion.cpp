// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/CodeRegion.h"

#include "detection/LumaKernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace quillmark {
namespace {

constexpr int cellSide = cellPixels;
constexpr int rowsSampled = 4; // every so manieth row of a cell
constexpr double leastIsotropy = 0.5;
constexpr int leastCells = 16;
constexpr int mostCellsAlong = 50; // larger codes are seen on a smaller copy
constexpr double leastFill = 0.86;
constexpr double mostFill = 1.14;
constexpr double mostStretch = 2.6;
constexpr double margin = 0.35; // of a region's side, to each side
constexpr std::size_t mostRegions = 3;
constexpr double likeAreas = 0.6; // of what two areas cover, what both do

/// How busy the cells of a picture are: the mean step from a pixel to the next but one, which
/// grain adds to less than to the step to the next.
class BusyMap
{
public:
    explicit BusyMap(const LumaView &picture)
        : m_width(picture.width / cellSide), m_height(picture.height / cellSide)
    {
        const auto columns = static_cast<std::size_t>(m_width);
        m_cells.reserve(columns * static_cast<std::size_t>(m_height));
        std::vector<std::uint64_t> sums(2 * columns);
        for (int row = 0; row < m_height; ++row) {
            std::ranges::fill(sums, 0);
            for (int y = 0; y < cellSide; y += rowsSampled) {
                const int top = std::min(row * cellSide + y, picture.height - 3);
                addSteps(picture.row(top), picture.row(top + 2), columns, sums.data());
            }
            for (std::size_t column = 0; column < columns; ++column) {
                m_cells.push_back(busyness(sums[2 * column], sums[2 * column + 1]));
            }
        }
    }

    int width() const { return m_width; }
    int height() const { return m_height; }
    float at(std::size_t cell) const { return m_cells[cell]; }
    const std::vector<float> &cells() const { return m_cells; }

private:
    static float busyness(std::uint64_t across, std::uint64_t down)
    {
        constexpr double steps = cellSteps * (static_cast<double>(cellSide) / rowsSampled);
        const auto least = static_cast<double>(std::min(across, down));
        const auto most = static_cast<double>(std::max(across, down));
        return least >= leastIsotropy * most ? static_cast<float>(least / steps) : 0.0F;
    }

    int m_width;
    int m_height;
    std::vector<float> m_cells;
};

/// Cells that hang together, and how they lie.
struct Patch {
    std::vector<std::size_t> cells;
    double busyness = 0;
};

class PatchFinder
{
public:
    explicit PatchFinder(const BusyMap &map) : m_map(map) {}

    /// The patches of cells that are busier than a level.
    std::vector<Patch> above(float level)
    {
        m_seen.assign(m_map.cells().size(), false);
        std::vector<Patch> patches;
        for (std::size_t cell = 0; cell < m_seen.size(); ++cell) {
            if (!m_seen[cell] && m_map.at(cell) > level) {
                Patch patch = grow(cell, level);
                if (patch.cells.size() >= leastCells) {
                    patches.push_back(std::move(patch));
                }
            }
        }
        return patches;
    }

private:
    Patch grow(std::size_t start, float level)
    {
        Patch patch;
        const auto width = static_cast<std::size_t>(m_map.width());
        m_seen[start] = true;
        patch.cells.push_back(start);
        for (std::size_t i = 0; i < patch.cells.size(); ++i) {
            const std::size_t cell = patch.cells[i];
            patch.busyness += m_map.at(cell);
            const auto visit = [&](std::size_t next) {
                if (!m_seen[next] && m_map.at(next) > level) {
                    m_seen[next] = true;
                    patch.cells.push_back(next);
                }
            };
            if (cell % width > 0) {
                visit(cell - 1);
            }
            if (cell % width + 1 < width) {
                visit(cell + 1);
            }
            if (cell >= width) {
                visit(cell - width);
            }
            if (cell + width < m_seen.size()) {
                visit(cell + width);
            }
        }
        return patch;
    }

    const BusyMap &m_map;
    std::vector<bool> m_seen;
};

struct Candidate {
    PixelArea area;
    double merit = 0;
};

/// The area of a patch that is as full as a quadrilateral of its spread would be.
bool isCompact(const Patch &patch, int width, Candidate &candidate)
{
    double x = 0;
    double y = 0;
    double xx = 0;
    double yy = 0;
    double xy = 0;
    int left = width;
    int right = 0;
    int top = 1 << 30;
    int bottom = 0;
    for (const std::size_t cell : patch.cells) {
        const int column = static_cast<int>(cell) % width;
        const int row = static_cast<int>(cell) / width;
        x += column;
        y += row;
        xx += column * column;
        yy += row * row;
        xy += column * row;
        left = std::min(left, column);
        right = std::max(right, column + 1);
        top = std::min(top, row);
        bottom = std::max(bottom, row + 1);
    }
    const auto count = static_cast<double>(patch.cells.size());
    x /= count;
    y /= count;
    // A cell is spread itself.
    xx = xx / count - x * x + 1.0 / 12;
    yy = yy / count - y * y + 1.0 / 12;
    xy = xy / count - x * y;
    const double determinant = xx * yy - xy * xy;
    const double fill = count / (12 * std::sqrt(std::max(determinant, 1e-9)));
    const double middle = (xx + yy) / 2;
    const double swing = std::sqrt(std::max(middle * middle - determinant, 0.0));
    const double stretch = (middle + swing) / std::max(middle - swing, 1e-9);
    if (fill < leastFill || fill > mostFill || stretch > mostStretch * mostStretch) {
        return false;
    }
    const int side = std::max(right - left, bottom - top);
    if (side > mostCellsAlong) {
        return false;
    }
    const int around = static_cast<int>(margin * side) + 1;
    candidate.area = {(left - around) * cellSide, (top - around) * cellSide,
                      (right - left + 2 * around) * cellSide,
                      (bottom - top + 2 * around) * cellSide};
    candidate.merit = patch.busyness / count * std::sqrt(count);
    return true;
}

bool contains(const PixelArea &area, const PixelArea &other)
{
    const int x = other.left + other.width / 2;
    const int y = other.top + other.height / 2;
    return x > area.left && x < area.left + area.width && y > area.top &&
           y < area.top + area.height;
}

} // namespace

bool areAlike(const PixelArea &a, const PixelArea &b)
{
    const auto shared = [](int first, int length, int otherFirst, int otherLength) {
        return std::max(0, std::min(first + length, otherFirst + otherLength) -
                               std::max(first, otherFirst));
    };
    const double both =
        1.0 * shared(a.left, a.width, b.left, b.width) * shared(a.top, a.height, b.top, b.height);
    return both > likeAreas * (1.0 * a.width * a.height + 1.0 * b.width * b.height - both);
}

std::vector<PixelArea> findCodeRegions(const LumaView &picture)
{
    if (picture.width < 4 * cellSide || picture.height < 4 * cellSide) {
        return {};
    }
    const BusyMap map(picture);
    std::vector<float> ordered = map.cells();
    auto begin = ordered.begin();
    const auto levelAt = [&](double share) {
        const auto place =
            static_cast<std::ptrdiff_t>(share * static_cast<double>(ordered.size() - 1));
        std::ranges::nth_element(begin, ordered.begin() + place, ordered.end());
        begin = ordered.begin() + place;
        return *begin;
    };
    std::vector<Candidate> candidates;
    PatchFinder finder(map);
    // A code may be most of a picture or a fiftieth of a hundredth of it. The shares rise: what
    // is below a level stays there.
    for (const double share : {0.4, 0.6, 0.75, 0.85, 0.92, 0.96, 0.98, 0.99}) {
        const float level = std::max(levelAt(share), 2.0F);
        for (const Patch &patch : finder.above(level)) {
            Candidate candidate;
            if (isCompact(patch, map.width(), candidate)) {
                candidates.push_back(candidate);
            }
        }
    }
    std::ranges::stable_sort(candidates, std::ranges::greater{}, &Candidate::merit);
    std::vector<PixelArea> regions;
    for (const Candidate &candidate : candidates) {
        const auto isKnown = [&candidate](const PixelArea &known) {
            return contains(known, candidate.area);
        };
        if (regions.size() < mostRegions && std::ranges::none_of(regions, isKnown)) {
            regions.push_back(candidate.area);
        }
    }
    return regions;
}

} // namespace quillmark
