// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/GreyPlane.h"

#include "detection/Reduce.h"

#include <algorithm>
#include <cstdint>

namespace quillmark {
namespace {

/// Where a pixel of a resampled row or column lies between two of the source.
struct Between {
    int before = 0;
    float share = 0; ///< of the one behind
};

std::vector<Between> placesBetween(int count, double step, int sourceCount)
{
    std::vector<Between> places(static_cast<std::size_t>(count));
    double middle = step / 2;
    for (Between &place : places) {
        const double at = std::clamp(middle - 0.5, 0.0, sourceCount - 1.001);
        place.before = static_cast<int>(at);
        place.share = static_cast<float>(at - place.before);
        middle += step;
    }
    return places;
}

} // namespace

GreyPlane resampled(const LumaView &picture, double factor)
{
    const int box = std::max(static_cast<int>(factor), 1);
    const LumaImage reduced = reduceByBox(picture, box);
    const double step = factor / box;
    GreyPlane plane(static_cast<int>(reduced.width / step),
                    static_cast<int>(reduced.height / step));
    const std::vector<Between> columns = placesBetween(plane.width, step, reduced.width);
    const std::vector<Between> rows = placesBetween(plane.height, step, reduced.height);
    for (int y = 0; y < plane.height; ++y) {
        const auto [top, down] = rows[static_cast<std::size_t>(y)];
        const std::uint8_t *above = LumaView(reduced).row(top);
        const std::uint8_t *below = above + reduced.width;
        float *out = plane.row(y);
        for (const auto &[left, right] : columns) {
            const float upper = static_cast<float>(above[left]) +
                                right * static_cast<float>(above[left + 1] - above[left]);
            const float lower = static_cast<float>(below[left]) +
                                right * static_cast<float>(below[left + 1] - below[left]);
            *out++ = upper + down * (lower - upper);
        }
    }
    return plane;
}

} // namespace quillmark
