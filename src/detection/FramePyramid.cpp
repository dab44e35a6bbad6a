// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FramePyramid.h"

#include "detection/Reduce.h"

#include <algorithm>

namespace quillmark {

bool FramePyramid::isScannedAt(int scale) const
{
    return std::min(m_frame.width, m_frame.height) / scale >= leastScannedSide;
}

std::size_t FramePyramid::pixelsAt(int scale) const
{
    return static_cast<std::size_t>(m_frame.width / scale) *
           static_cast<std::size_t>(m_frame.height / scale);
}

LumaView FramePyramid::copy(int scale)
{
    if (scale == 1 || scale == 3 || scale == 9) {
        return m_looks.copy(scale);
    }
    const auto known = m_copies.find(scale);
    if (known != m_copies.end()) {
        return known->second;
    }
    // From a copy that is there already, where one divides it: that is less to read.
    int from = scale % 3 == 0 ? 3 : 1;
    for (const auto &[other, image] : m_copies) {
        from = scale % other == 0 ? other : from;
    }
    return m_copies.emplace(scale, reduceByBox(copy(from), scale / from)).first->second;
}

const std::vector<PixelArea> &FramePyramid::regions(int scale)
{
    const auto known = m_regions.find(scale);
    return known != m_regions.end()
               ? known->second
               : m_regions.emplace(scale, findCodeRegions(copy(scale))).first->second;
}

} // namespace quillmark
