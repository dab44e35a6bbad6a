// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/CardGeometry.h"
#include "support/simulator/Sheet.h"

#include <vector>

namespace quillmark::test {

/// A rectangle of a frame with something laid over it: how much of each pixel is covered,
/// and with how much light (0 to about the coverage).
struct Overlay {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<float> coverage;
    std::vector<float> light;
};

/// Renders a sheet as far as it lies in the frame, sharp but for the pixel grid.
/// `margin` pixels are kept around the sheet for a blur to spread into.
Overlay renderCard(const Sheet &sheet, const CardGeometry &geometry, int frameWidth,
                   int frameHeight, int margin, int workers);

} // namespace quillmark::test
