// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace quillmark {

/// A picture sharpened with an unsharp mask: each pixel moves away from the mean of its 5 x 5
/// neighbourhood (binomial weights, a deviation of one pixel) by `quarters` quarters of its
/// distance; 1 to 16. Any thread.
LumaImage sharpen(const LumaView &picture, int quarters);

/// The same of a picture that comes into being from the top. The picture must outlive it.
class Sharpening
{
public:
    /// Throws std::bad_alloc.
    Sharpening(const LumaView &picture, int quarters);

    /// Goes as far as the picture's rows above `end` allow, and gives how many rows of the
    /// sharpened one are final.
    int advance(int end);

    /// Of which the final rows are there.
    const LumaImage &image() const { return m_sharpened; }
    LumaImage take() { return std::move(m_sharpened); }

private:
    LumaView m_picture;
    int m_quarters;
    LumaImage m_sharpened;
    std::vector<std::uint16_t> m_sums;
    int m_end = 0;
};

/// Exchanges light and dark in place. Any thread.
void invert(LumaImage &image);

} // namespace quillmark
