// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderScan.h"

#include "detection/FinderRuns.h"
#include "detection/LumaKernels.h"
#include "detection/RunKernels.h"

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

constexpr float leastContrast = 10.0F; // grey levels between the pattern's light and dark
constexpr std::size_t mostMarks = 4000;
constexpr std::size_t lookBack = 200;
// How far below a row its marks are checked: the column through a pattern goes 6.5 modules of up
// to 9 pixels and finds its middle half of that away; modules that are 1.7 times as large each way
// may be crossed from there, and on the diagonals 6.5 of these at 0.85 steps.
constexpr int rowsBelow = 176;

/// Checks the places of one row where five runs may stand as they do across a pattern.
class RowScan
{
public:
    RowScan(const LumaView &picture, int y, MarkList &marks)
        : m_picture(picture), m_y(y), m_marks(marks)
    {}

    /// Of six edges of runs between light and dark, `places` tells more exactly where they are.
    void checkRuns(const std::int32_t *edges, const float *places, const std::int16_t *flat)
    {
        FinderMark mark;
        mark.isDark = flat[edges[2]] < 0;
        const float inner = levelAt(edges[2], edges[3] - 1);
        const float ring =
            (levelAt(edges[1], edges[2] - 1) + levelAt(edges[3], edges[4] - 1)) / 2.0F;
        mark.threshold = (inner + ring) / 2.0F;
        mark.contrast = mark.isDark ? ring - inner : inner - ring;
        if (mark.contrast >= leastContrast) {
            const float module = (places[5] - places[0]) / 7.0F;
            check(static_cast<int>(std::lround((places[2] + places[3]) / 2.0F)), module, mark);
        }
    }

private:
    float levelAt(int first, int end) const
    {
        const int middle = (first + end) / 2;
        return static_cast<float>(m_picture.row(m_y)[middle]);
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
    m_flat.resize(static_cast<std::size_t>(std::max(picture.width, 0)));
    m_scratch.resize(flattenScratch(m_flat.size()));
    m_edges.resize(m_flat.size() + runSlack);
    m_places.resize(m_flat.size());
    m_found.resize(m_flat.size() + runSlack);
}

void FinderScan::advance(int end)
{
    const int last = end < m_picture.height ? end - rowsBelow : m_picture.height;
    for (; m_next < last; m_next += m_rowStep) {
        flattenRow(m_picture.row(m_next), m_flat.size(), m_scratch.data(), m_flat.data());
        const std::size_t edges = findSignChanges(m_flat.data(), m_flat.size(), m_edges.data());
        placeEdges(m_flat.data(), m_edges.data(), edges, m_places.data());
        const std::size_t found = findFinderRuns(m_places.data(), edges, m_found.data());
        RowScan row(m_picture, m_next, m_marks);
        for (std::size_t i = 0; i < found; ++i) {
            row.checkRuns(m_edges.data() + m_found[i], m_places.data() + m_found[i], m_flat.data());
        }
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
