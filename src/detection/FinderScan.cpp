// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderScan.h"

#include "detection/FinderRuns.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

namespace quillmark {
namespace {

constexpr int meanReach = 24; // pixels each side: seven modules of seven pixels
constexpr float leastModule = 1.6F;
constexpr float largestModule = 9.0F;
constexpr float leastContrast = 10.0F; // grey levels between the pattern's light and dark
constexpr std::size_t mostMarks = 4000;
constexpr std::size_t lookBack = 200;
// How far below a row its marks are checked: the column through a pattern goes 6.5 modules of up
// to 9 pixels and finds its middle half of that away; modules that are 1.7 times as large each way
// may be crossed from there, and on the diagonals 6.5 of these at 0.85 steps.
constexpr int rowsBelow = 176;

/// The row less the mean of its neighbourhood, lightly smoothed against grain.
void flattenRow(const std::uint8_t *row, int width, std::vector<std::uint32_t> &prefix,
                std::vector<std::int16_t> &flat)
{
    std::uint32_t sum = 0; // may wrap around: only differences count
    for (int x = 0; x < width; ++x) {
        prefix[static_cast<std::size_t>(x)] = sum;
        sum += row[x];
    }
    prefix[static_cast<std::size_t>(width)] = sum;

    const auto flattened = [&](int x, int first, int end) {
        const auto around = static_cast<std::int32_t>(prefix[static_cast<std::size_t>(end)] -
                                                      prefix[static_cast<std::size_t>(first)]);
        const int left = row[std::max(x - 1, 0)];
        const int right = row[std::min(x + 1, width - 1)];
        return static_cast<std::int16_t>(4 * (left + 2 * row[x] + right) -
                                         16 * around / (end - first));
    };
    const int border = std::min(meanReach, width);
    for (int x = 0; x < border; ++x) {
        flat[static_cast<std::size_t>(x)] = flattened(x, 0, std::min(width, x + meanReach + 1));
    }
    // The reciprocal lets the middle of the row become vector code.
    constexpr float share = 16.0F / (2 * meanReach + 1);
    const std::uint32_t *from = prefix.data();
    std::int16_t *to = flat.data();
    for (int x = meanReach; x < width - meanReach; ++x) {
        const auto around = static_cast<float>(
            static_cast<std::int32_t>(from[x + meanReach + 1] - from[x - meanReach]));
        to[x] = static_cast<std::int16_t>(4 * (row[x - 1] + 2 * row[x] + row[x + 1]) -
                                          static_cast<int>(around * share));
    }
    for (int x = std::max(border, width - meanReach); x < width; ++x) {
        flat[static_cast<std::size_t>(x)] = flattened(x, std::max(0, x - meanReach), width);
    }
}

/// Follows the runs of one row as they end, and checks each five that fit.
class RowScan
{
public:
    RowScan(const LumaView &picture, int y, MarkList &marks)
        : m_picture(picture), m_y(y), m_marks(marks)
    {}

    /// `flat` is the row's distance from its threshold; `edges` is room for width numbers.
    void scan(const std::vector<std::int16_t> &flat, std::vector<int> &edges)
    {
        // Where the row crosses its threshold, without a branch: in grain every second
        // pixel does, and no processor foresees which.
        int *end = edges.data();
        for (int x = 1; x < m_picture.width; ++x) {
            *end = x;
            end += (flat[static_cast<std::size_t>(x - 1)] ^ flat[static_cast<std::size_t>(x)]) < 0;
        }
        for (const int *first = edges.data(); end - first >= 6; ++first) {
            if (roughlyFits(first)) {
                refine(first, flat);
            }
        }
    }

private:
    /// finderModule() in whole pixels, where each run may be one pixel off.
    static bool roughlyFits(const int *edges)
    {
        const int total = edges[5] - edges[0];
        const int middle = edges[3] - edges[2];
        const bool sizeFits = (total >= 10) & (total <= 66) & (middle >= 2);
        const int slack = total * 6 / 10 + 9;
        return sizeFits && std::abs(7 * middle - 3 * total) <= 2 * slack &&
               std::abs(7 * (edges[1] - edges[0]) - total) <= slack &&
               std::abs(7 * (edges[2] - edges[1]) - total) <= slack &&
               std::abs(7 * (edges[4] - edges[3]) - total) <= slack &&
               std::abs(7 * (edges[5] - edges[4]) - total) <= slack;
    }

    float levelAt(int first, int end) const
    {
        const int middle = (first + end) / 2;
        return static_cast<float>(m_picture.row(m_y)[middle]);
    }

    void refine(const int *edges, const std::vector<std::int16_t> &flat)
    {
        const bool isDark = flat[static_cast<std::size_t>(edges[2])] < 0;
        const float inner = levelAt(edges[2], edges[3] - 1);
        const float ring =
            (levelAt(edges[1], edges[2] - 1) + levelAt(edges[3], edges[4] - 1)) / 2.0F;
        const float contrast = isDark ? ring - inner : inner - ring;
        if (contrast < leastContrast) {
            return;
        }
        std::array<float, 6> positions{};
        for (std::size_t i = 0; i < positions.size(); ++i) {
            const auto x = static_cast<std::size_t>(edges[i]);
            const auto rise = static_cast<float>(flat[x]);
            positions[i] = static_cast<float>(x) - rise / (rise - static_cast<float>(flat[x - 1]));
        }
        FinderRuns runs{};
        for (std::size_t i = 0; i < runs.size(); ++i) {
            runs[i] = positions[i + 1] - positions[i];
        }
        const std::optional<float> module = finderModule(runs);
        if (!module || *module < leastModule || *module > largestModule) {
            return;
        }
        FinderMark mark;
        mark.isDark = isDark;
        mark.threshold = (inner + ring) / 2.0F;
        mark.contrast = contrast;
        check(static_cast<int>(std::lround((positions[2] + positions[3]) / 2.0F)), *module, mark);
    }

    /// Checks a pattern whose middle the row crosses at x in the other directions.
    void check(int x, float module, FinderMark &mark)
    {
        const auto threshold = static_cast<float>(mark.threshold);
        const PixelLine column(m_picture, x, m_y, m_picture.stride, m_y,
                               m_picture.height - 1 - m_y);
        const std::optional<FinderCrossing> down =
            crossFinder(column, mark.isDark, threshold, module);
        if (!down) {
            return;
        }
        // Back across, through the middle that the column gave.
        const int y = m_y + static_cast<int>(std::lround(down->offset));
        const PixelLine row(m_picture, x, y, 1, x, m_picture.width - 1 - x);
        const std::optional<FinderCrossing> across =
            crossFinder(row, mark.isDark, threshold, down->module);
        if (!across) {
            return;
        }
        mark.diagonals = diagonalCrossings(x, y, mark.isDark, threshold, across->module);
        if (mark.diagonals == 0) {
            return;
        }
        mark.x = x + 0.5 + across->offset;
        mark.y = m_y + 0.5 + down->offset;
        mark.module = (across->module + down->module) / 2.0;
        mark.hits = 1;
        m_marks.add(mark);
    }

    /// Lines through the middle of squares in squares meet them in the same proportion in
    /// every direction; grain seldom does so in four.
    int diagonalCrossings(int x, int y, bool isDark, float threshold, float module) const
    {
        const int up = y;
        const int down = m_picture.height - 1 - y;
        const int left = x;
        const int right = m_picture.width - 1 - x;
        const PixelLine falling(m_picture, x, y, m_picture.stride + 1, std::min(up, left),
                                std::min(down, right));
        const PixelLine rising(m_picture, x, y, m_picture.stride - 1, std::min(up, right),
                               std::min(down, left));
        // A step along a diagonal is longer than a pixel.
        const float steps = module * 0.85F;
        return (crossFinder(falling, isDark, threshold, steps) ? 1 : 0) +
               (crossFinder(rising, isDark, threshold, steps) ? 1 : 0);
    }

    const LumaView &m_picture;
    int m_y;
    MarkList &m_marks;
};

} // namespace

void MarkList::add(const FinderMark &mark)
{
    // Newest first: rows come in order, so a match is near the end.
    const std::size_t oldest = m_marks.size() > lookBack ? m_marks.size() - lookBack : 0;
    for (std::size_t i = m_marks.size(); i-- > oldest;) {
        FinderMark &known = m_marks[i];
        const double near = 1.5 * known.module;
        if (known.isDark == mark.isDark && std::abs(known.x - mark.x) < near &&
            std::abs(known.y - mark.y) < near && mark.module < 1.5 * known.module &&
            known.module < 1.5 * mark.module) {
            known.hits += mark.hits;
            known.diagonals = std::max(known.diagonals, mark.diagonals);
            const double share = static_cast<double>(mark.hits) / known.hits;
            known.x += (mark.x - known.x) * share;
            known.y += (mark.y - known.y) * share;
            known.module += (mark.module - known.module) * share;
            return;
        }
    }
    if (m_marks.size() < mostMarks) {
        m_marks.push_back(mark);
    }
}

FinderScan::FinderScan(const LumaView &picture, int rowStep)
    : m_picture(picture), m_rowStep(rowStep), m_next(rowStep / 2)
{
    if (picture.isEmpty() || picture.width < 2) {
        m_picture.height = 0;
    }
    const auto width = static_cast<std::size_t>(std::max(picture.width, 0));
    m_prefix.resize(width + 1);
    m_flat.resize(width);
    m_edges.resize(width);
}

void FinderScan::advance(int end)
{
    const int last = end < m_picture.height ? end - rowsBelow : m_picture.height;
    for (; m_next < last; m_next += m_rowStep) {
        flattenRow(m_picture.row(m_next), m_picture.width, m_prefix, m_flat);
        RowScan(m_picture, m_next, m_marks).scan(m_flat, m_edges);
    }
}

std::vector<FinderMark> FinderScan::finish()
{
    advance(m_picture.height);
    return m_marks.take();
}

std::vector<FinderMark> scanForFinders(const LumaView &picture, int rowStep)
{
    return FinderScan(picture, rowStep).finish();
}

} // namespace quillmark
