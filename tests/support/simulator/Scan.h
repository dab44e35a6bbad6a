// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "support/ImageFiles.h"

#include <array>
#include <span>

namespace quillmark::test {

/// What the scanner does with what it sees on the film.
struct ScanOptions {
    double gamma = 1.0;    ///< the power that tones are raised to: 2.2 gives linear samples
    double gain = 1.0;     ///< then they are multiplied: dark scans are below 1
    double sharpening = 0; ///< of the difference from the mean of nine pixels; minilabs use about 1
    /// Of red, green and blue: casts, and the mask of a colour negative that was not inverted.
    std::array<double, 3> colours{1, 1, 1};

    /// What the colours leave of grey (ITU-R BT.601).
    double luma() const { return 0.299 * colours[0] + 0.587 * colours[1] + 0.114 * colours[2]; }
};

/// Changes tones as the scanner's curve does, to 0 to 1.
void scanRow(std::span<float> tone, const ScanOptions &options);

/// Sharpens as a scanner's program does before it writes the file.
void sharpenScan(LumaImage &picture, double strength);
void sharpenScan(RasterImage &picture, double strength);

} // namespace quillmark::test
