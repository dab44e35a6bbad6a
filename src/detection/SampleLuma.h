// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SampleLevels.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark {

// Luma is 0.299 R + 0.587 G + 0.114 B (ITU-R BT.601-7, section 2.5.1; for JPEG files
// ITU-T T.871), of the stored values: no transfer curve is undone.
//
// Below, `samples` is a row of pixels of `channels` samples each, of which those that carry
// no colour come last and are passed over; `count` is the number of pixels.

/// The first channel alone.
void lumaFromFirst(const std::uint8_t *samples, int channels, int count, std::uint8_t *out);

/// Cyan, magenta, yellow and black; 255 is full ink.
void lumaFromInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out);

/// Cyan, magenta, yellow and black; 255 is no ink.
void lumaFromInvertedInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out);

enum class SampleType { uint8, uint16, uint32, float32, float64 };

std::size_t sampleBytes(SampleType type);

/// What white is unless the picture says otherwise.
float nominalWhite(SampleType type);

enum class SampleKind {
    grey,         ///< 0 is black
    invertedGrey, ///< 0 is white
    palette,      ///< index into SampleLayout::palette
    rgb,
    inks, ///< cyan, magenta, yellow, black; 0 is no ink
    lab,  ///< CIE L*a*b*, with L* over the full range of unsigned numbers
};

/// What the samples of a row stand for. Whole numbers use the full range of their type;
/// floating-point ones usually go from 0 to 1.
struct SampleLayout {
    SampleType type = SampleType::uint8;
    SampleKind kind = SampleKind::grey;
    int channels = 1;                        ///< per pixel, those that are passed over included
    std::array<std::uint8_t, 256> palette{}; ///< the luma of each colour
};

/// How many channels of a pixel carry its colour.
constexpr int colourChannels(SampleKind kind)
{
    return kind == SampleKind::rgb ? 3 : kind == SampleKind::inks ? 4 : 1;
}

/// Whether SampleLuma can convert this.
bool isConvertible(const SampleLayout &layout);

/// Turns rows of samples into rows of 8-bit luma. Samples that are deeper than 8 bits go
/// through levels, which the caller finds from some of the rows before converting all.
class SampleLuma
{
public:
    /// The layout must be convertible.
    explicit SampleLuma(const SampleLayout &layout);

    /// Whether levels have a meaning for these samples.
    bool isDeep() const { return m_layout.type != SampleType::uint8; }

    /// Adds every `step`-th pixel of a row, from `first` on, to those that levels are found from.
    void sample(const void *samples, int count, int first, int step, LevelSampler &levels) const;

    /// Without a call, the nominal range is shown.
    void setLevels(const Levels &levels) { m_levels = levels; }

    /// `samples` is aligned for its type.
    void convert(const void *samples, int count, std::uint8_t *out) const;

private:
    void convertBytes(const std::uint8_t *samples, int count, std::uint8_t *out) const;
    void deepLuma(const std::uint16_t *samples, int count, std::uint16_t *out) const;
    template <typename Sample>
    void wideLuma(const Sample *samples, int count, float *out) const;
    void anyLuma(const void *samples, int count, float *out) const;

    SampleLayout m_layout;
    std::size_t m_pixelBytes;
    Levels m_levels;
    std::array<std::uint8_t, 256> m_tone{}; ///< for kinds of one channel of 8 bits
    std::vector<std::uint16_t> m_deepTone;  ///< the same for 16 bits, where one is needed
};

} // namespace quillmark
