// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillmark {

enum class SampleType { uint8, uint16, uint32, float32, float64 };

std::size_t sampleBytes(SampleType type);

/// What white is unless the picture says otherwise.
float nominalWhite(SampleType type);

enum class SampleKind {
    grey,         ///< 0 is black
    invertedGrey, ///< 0 is white
    palette,      ///< index into SampleLayout::palette
    rgb,
    inks,  ///< cyan, magenta, yellow, black; 0 is no ink
    yCbCr, ///< ITU-T T.871: luma, and chroma around the middle of the range
    lab,   ///< CIE L*a*b*, with L* over the full range of unsigned numbers
};

/// How the two channels behind luma or lightness stand for colours.
enum class ChromaCoding {
    absent, ///< there are none, or they are passed over
    middle, ///< whole numbers around the middle of the range
    zero,   ///< signed numbers (two's complement)
};

/// What the samples of a row stand for. Whole numbers use the full range of their type;
/// floating-point ones usually go from 0 to 1.
struct SampleLayout {
    SampleType type = SampleType::uint8;
    SampleKind kind = SampleKind::grey;
    int channels = 1;                           ///< per pixel, those that are passed over included
    ChromaCoding chroma = ChromaCoding::absent; ///< of yCbCr and lab, in 8 or 16 bits
    std::array<std::array<std::uint16_t, 3>, 256> palette{}; ///< red, green and blue
};

/// How many channels of a pixel carry its colour.
int colourChannels(SampleKind kind, ChromaCoding chroma);

/// Whether SampleConverter can convert this.
bool isConvertible(const SampleLayout &layout);

} // namespace quillmark
