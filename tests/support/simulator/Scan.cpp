// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Scan.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace quillmark::test {
namespace {

/// One channel after the other; `channels` samples lie between neighbours of one.
template <typename Sample>
void sharpenSamples(std::vector<Sample> &samples, int width, int height, int channels,
                    double strength)
{
    constexpr float white = std::numeric_limits<Sample>::max();
    const auto step = static_cast<std::size_t>(channels);
    const std::size_t rowLength = static_cast<std::size_t>(width) * step;
    const std::vector<Sample> soft = samples;
    const auto force = static_cast<float>(strength);
    for (int y = 1; y + 1 < height; ++y) {
        const std::size_t row = static_cast<std::size_t>(y) * rowLength;
        for (std::size_t at = row + step; at < row + rowLength - step; ++at) {
            float sum = 0;
            for (const std::size_t line : {at - rowLength, at, at + rowLength}) {
                sum += static_cast<float>(soft[line - step]) + static_cast<float>(soft[line]) +
                       static_cast<float>(soft[line + step]);
            }
            const auto here = static_cast<float>(soft[at]);
            const float sharp = here + force * (here - sum / 9.0F);
            samples[at] = static_cast<Sample>(std::clamp(sharp + 0.5F, 0.0F, white));
        }
    }
}

} // namespace

void scanRow(std::span<float> tone, const ScanOptions &options)
{
    const auto gamma = static_cast<float>(options.gamma);
    const auto gain = static_cast<float>(options.gain);
    for (float &value : tone) {
        value = std::clamp(value, 0.0F, 1.0F);
        value = gain * (options.gamma == 1.0 ? value : std::pow(value, gamma));
    }
}

void sharpenScan(LumaImage &picture, double strength)
{
    if (strength > 0) {
        sharpenSamples(picture.pixels, picture.width, picture.height, 1, strength);
    }
}

void sharpenScan(RasterImage &picture, double strength)
{
    if (strength > 0) {
        sharpenSamples(picture.samples, picture.width, picture.height, picture.channels, strength);
    }
}

} // namespace quillmark::test
