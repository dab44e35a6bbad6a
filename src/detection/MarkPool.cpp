// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/MarkPool.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillmark {
namespace {

// Each mark is compared with each that is known.
constexpr std::size_t mostMarks = 1000;
constexpr std::size_t mostAdded = 1000;

bool areOne(const FinderMark &a, const FinderMark &b)
{
    const double near = 1.5 * std::min(a.module, b.module);
    const double ratio = a.module > b.module ? a.module / b.module : b.module / a.module;
    return a.isDark == b.isDark && ratio < 1.5 && std::abs(a.x - b.x) < near &&
           std::abs(a.y - b.y) < near;
}

} // namespace

void MarkPool::add(std::span<const FinderMark> marks)
{
    std::vector<FinderMark> added(marks.begin(), marks.end());
    std::ranges::stable_sort(added, std::ranges::greater{}, &FinderMark::hits);
    added.resize(std::min(added.size(), mostAdded));
    const std::size_t known = m_marks.size();
    for (FinderMark &mark : added) {
        const auto end = m_marks.begin() + static_cast<std::ptrdiff_t>(known);
        const auto same = std::find_if(
            m_marks.begin(), end, [&mark](const FinderMark &other) { return areOne(mark, other); });
        if (same == end) {
            if (m_marks.size() < mostMarks) {
                m_marks.push_back(mark);
            }
        } else if (mark.hits > same->hits) {
            // The look that saw more of it says where it is.
            mark.hits += same->hits;
            mark.diagonals = std::max(mark.diagonals, same->diagonals);
            *same = mark;
        } else {
            same->hits += mark.hits;
            same->diagonals = std::max(mark.diagonals, same->diagonals);
        }
    }
}

} // namespace quillmark
