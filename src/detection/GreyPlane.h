// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <cstddef>
#include <vector>

namespace quillmark {

/// A grey picture in fractions of grey levels.
struct GreyPlane {
    int width = 0;
    int height = 0;
    std::vector<float> values;

    GreyPlane(int columns, int rows)
        : width(columns),
          height(rows),
          values(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows))
    {}

    float *row(int y) { return values.data() + static_cast<std::ptrdiff_t>(y) * width; }
    const float *row(int y) const { return values.data() + static_cast<std::ptrdiff_t>(y) * width; }
};

/// The picture at 1/factor of its size, whatever the factor: by the means of whole pixels as far as
/// it is a whole number, and between those by lines (bilinear). Throws std::bad_alloc.
GreyPlane resampled(const LumaView &picture, double factor);

} // namespace quillmark
