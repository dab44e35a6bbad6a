// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SampleKernels.h"
#include "detection/SampleLayout.h"
#include "detection/SampleLevels.h"
#include "detection/SampleOutput.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark {

// Below, `Output` is LumaOutput or RgbOutput; `samples` is a row of pixels of `channels`
// samples each, of which those that carry no colour come last and are passed over; `count`
// is the number of pixels, and `out` has room for Output::channels bytes of each.

/// The first channel alone, as a grey.
template <typename Output>
void convertFirst(const std::uint8_t *samples, int channels, int count, std::uint8_t *out);

/// Cyan, magenta, yellow and black; 255 is full ink.
template <typename Output>
void convertInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out);

/// Cyan, magenta, yellow and black; 255 is no ink.
template <typename Output>
void convertInvertedInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out);

/// Turns rows of samples into rows of 8-bit luma or colours. Samples that are deeper than
/// 8 bits go through levels, which the caller finds from some of the rows before converting
/// all; the same levels for all three colours, so that hues stay.
template <typename Output>
class SampleConverter
{
public:
    /// The layout must be convertible.
    explicit SampleConverter(const SampleLayout &layout);

    /// Whether levels have a meaning for these samples.
    bool isDeep() const { return m_layout.type != SampleType::uint8; }

    /// Adds every `step`-th pixel of a row, from `first` on, to those that levels are found from.
    void sample(const void *samples, int count, int first, int step, LevelSampler &levels) const;

    /// Without a call, the nominal range is shown.
    void setLevels(const Levels &levels);

    /// `samples` is aligned for its type.
    void convert(const void *samples, int count, std::uint8_t *out) const;

    // The two steps that make up convert() for deep samples: tones are samples of the output,
    // whole numbers of 16 bits or else float, to which no levels were applied yet.

    /// Of one pixel.
    std::size_t toneBytes() const;

    /// `out` is aligned for its type.
    void tones(const void *samples, int count, void *out) const;

    /// Adds every `step`-th of the tones, from `first` on, to those that levels are found from.
    void sampleTones(const void *tones, int count, int first, int step, LevelSampler &levels) const;

    /// Applies the levels.
    void convertTones(const void *tones, int count, std::uint8_t *out) const;

private:
    using Tone = std::array<std::uint8_t, Output::channels>;

    void fillTones();
    void convertBytes(const std::uint8_t *samples, int count, std::uint8_t *out) const;
    void convertDeep(const std::uint16_t *samples, int count, std::uint16_t *out) const;
    template <typename Sample>
    void convertWide(const Sample *samples, int count, float *out) const;

    SampleLayout m_layout;
    std::size_t m_pixelBytes;
    Levels m_levels;
    WholeLevels m_wholeLevels;              ///< the same, for 16 bits
    std::array<Tone, 256> m_tones{};        ///< for kinds of one channel of 8 bits
    std::vector<std::uint16_t> m_deepTones; ///< greys for 16 bits, where they are needed
};

using SampleLuma = SampleConverter<LumaOutput>;
using SampleRgb = SampleConverter<RgbOutput>;

} // namespace quillmark
