// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quillmark {

/// The mean light around a place inside the picture, as far out as a third of a module of so many
/// pixels: grain and the dots of a print alternate too. A few samples stand for all.
inline double meanLevel(const LumaView &picture, double x, double y, double module)
{
    constexpr double smallestAveraged = 4; // pixels to a module
    constexpr double share = 0.3;          // of a module, to each side
    if (module < smallestAveraged) {
        // Between the pixels linearly.
        const double column = std::clamp(x - 0.5, 0.0, picture.width - 1.001);
        const double row = std::clamp(y - 0.5, 0.0, picture.height - 1.001);
        const int left = static_cast<int>(column);
        const int top = static_cast<int>(row);
        const double right = column - left;
        const double down = row - top;
        const std::uint8_t *above = picture.row(top) + left;
        const std::uint8_t *below = above + (picture.height > 1 ? picture.stride : 0);
        const std::ptrdiff_t next = picture.width > 1 ? 1 : 0;
        const double upper = above[0] + right * (above[next] - above[0]);
        const double lower = below[0] + right * (below[next] - below[0]);
        return upper + down * (lower - upper);
    }
    const int column = static_cast<int>(x);
    const int row = static_cast<int>(y);
    const int reach = static_cast<int>(share * module);
    const int step = (reach + 1) / 2;
    int sum = 0;
    int count = 0;
    for (int v = std::max(row - reach, 0); v <= std::min(row + reach, picture.height - 1);
         v += step) {
        const std::uint8_t *pixels = picture.row(v);
        for (int u = std::max(column - reach, 0); u <= std::min(column + reach, picture.width - 1);
             u += step) {
            sum += pixels[u];
            ++count;
        }
    }
    return static_cast<double>(sum) / count;
}

} // namespace quillmark
