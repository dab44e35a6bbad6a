// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace quillmark {

// What a pixel becomes: the two ways in which SampleConverter writes it. Whole numbers use the
// full range of their type; floating-point ones are taken as they are.

/// One channel: 0.299 R + 0.587 G + 0.114 B (ITU-R BT.601-7, section 2.5.1; for JPEG files
/// ITU-T T.871), of the stored values: no transfer curve is undone.
struct LumaOutput {
    static constexpr int channels = 1;

    template <typename Sample>
    static void putGrey(Sample *out, Sample grey)
    {
        out[0] = grey;
    }

    template <typename Sample>
    static void putRgb(Sample *out, Sample red, Sample green, Sample blue)
    {
        if constexpr (std::is_floating_point_v<Sample>) {
            out[0] = 0.299F * red + 0.587F * green + 0.114F * blue;
        } else {
            // The weights in 1/65536; they sum up to 1, so that white stays white.
            constexpr std::uint32_t redWeight = 19595;
            constexpr std::uint32_t greenWeight = 38470;
            constexpr std::uint32_t blueWeight = 7471;
            out[0] = static_cast<Sample>(
                (red * redWeight + green * greenWeight + blue * blueWeight + 32768U) >> 16U);
        }
    }

    /// Light that passes the coloured inks and then the black one: how much each lets through.
    template <typename Sample>
    static void putLight(Sample *out, Sample red, Sample green, Sample blue, Sample black)
    {
        constexpr std::uint64_t most = std::numeric_limits<Sample>::max();
        Sample luma = 0;
        putRgb(&luma, red, green, blue);
        out[0] = static_cast<Sample>((std::uint64_t{luma} * black + most / 2) / most);
    }

    /// Luma and chroma around the middle of the range.
    template <typename Sample>
    static void putYCbCr(Sample *out, Sample luma, Sample /*cb*/, Sample /*cr*/)
    {
        out[0] = luma;
    }
};

/// Red, green and blue, as they are stored.
struct RgbOutput {
    static constexpr int channels = 3;

    template <typename Sample>
    static void putGrey(Sample *out, Sample grey)
    {
        putRgb(out, grey, grey, grey);
    }

    template <typename Sample>
    static void putRgb(Sample *out, Sample red, Sample green, Sample blue)
    {
        out[0] = red;
        out[1] = green;
        out[2] = blue;
    }

    template <typename Sample>
    static void putLight(Sample *out, Sample red, Sample green, Sample blue, Sample black)
    {
        constexpr std::uint64_t most = std::numeric_limits<Sample>::max();
        const auto through = [black](Sample light) {
            return static_cast<Sample>((std::uint64_t{light} * black + most / 2) / most);
        };
        putRgb(out, through(red), through(green), through(blue));
    }

    template <typename Sample>
    static void putYCbCr(Sample *out, Sample luma, Sample cb, Sample cr)
    {
        constexpr float most = std::numeric_limits<Sample>::max();
        constexpr float middle = (most + 1) / 2;
        const auto y = static_cast<float>(luma);
        const float blueness = static_cast<float>(cb) - middle;
        const float redness = static_cast<float>(cr) - middle;
        const auto bounded = [](float value) {
            return static_cast<Sample>(std::clamp(value + 0.5F, 0.0F, float{most}));
        };
        putRgb(out, bounded(y + 1.402F * redness),
               bounded(y - 0.344136F * blueness - 0.714136F * redness),
               bounded(y + 1.772F * blueness));
    }
};

} // namespace quillmark
