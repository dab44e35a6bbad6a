// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SampleKernels.h"
#include "detection/SampleOutput.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

// What SampleKernels does, one sample after another: for what is left over where a vector ends,
// and as that by which the vector code is measured.

namespace quillmark::scalar {

template <typename Sample>
void lumaOfRgb(const Sample *samples, int channels, int count, Sample *out)
{
    for (int i = 0; i < count; ++i, samples += channels) {
        LumaOutput::putRgb(out + i, samples[0], samples[1], samples[2]);
    }
}

inline void applyLevels(const WholeLevels &levels, const std::uint16_t *samples, int count,
                        std::uint8_t *out)
{
    for (int i = 0; i < count; ++i) {
        const std::uint32_t value =
            std::clamp<std::uint32_t>(samples[i], levels.black, levels.white) - levels.black;
        out[i] = static_cast<std::uint8_t>((value * levels.scale + 32768U) >> 16U);
    }
}

inline void swapBytes(std::uint16_t *samples, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<std::uint16_t>(samples[i] << 8U | samples[i] >> 8U);
    }
}

} // namespace quillmark::scalar
