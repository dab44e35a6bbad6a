// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace quillmark {

/// A copy at 1/factor of the size: each pixel is the mean of factor x factor pixels.
/// Columns and rows at the right and lower edge that do not fill a pixel are left out.
/// `factor` is 1 to 256. Any thread.
LumaImage reduceByBox(const LumaView &picture, int factor);

/// Such a copy of a picture that comes into being from the top. The picture must outlive it.
class BoxReduction
{
public:
    /// Throws std::bad_alloc.
    BoxReduction(const LumaView &picture, int factor);

    /// Goes as far as the picture's rows above `end` allow, and gives how many rows of the copy
    /// are final.
    int advance(int end);

    /// Of which the final rows are there.
    const LumaImage &image() const { return m_reduced; }
    LumaImage take() { return std::move(m_reduced); }

private:
    LumaView m_picture;
    int m_factor;
    LumaImage m_reduced;
    std::vector<std::uint16_t> m_sums;
    int m_end = 0;
};

/// A copy at `factor` times the size, 2 to 4, interpolated linearly. Any thread.
LumaImage enlarge(const LumaView &picture, int factor);

} // namespace quillmark
