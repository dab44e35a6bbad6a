// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SampleLuma.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace quillmark {
namespace {

/// The weights in 1/65536; they sum up to 1, so that white stays white.
constexpr std::uint32_t redWeight = 19595;
constexpr std::uint32_t greenWeight = 38470;
constexpr std::uint32_t blueWeight = 7471;

/// As many pixels as are converted at a time where there is a step between, so that what
/// lies between stays in the first cache.
constexpr int chunk = 1024;

template <typename Sample>
constexpr Sample weighted(std::uint32_t red, std::uint32_t green, std::uint32_t blue)
{
    return static_cast<Sample>(
        (red * redWeight + green * greenWeight + blue * blueWeight + 32768U) >> 16U);
}

template <typename Sample>
void lumaFromRgb(const Sample *samples, int channels, int count, Sample *out)
{
    // Three in a row is by far the most frequent, and a constant stride can be vectorised.
    if (channels == 3) {
        for (int i = 0; i < count; ++i, samples += 3) {
            out[i] = weighted<Sample>(samples[0], samples[1], samples[2]);
        }
        return;
    }
    for (int i = 0; i < count; ++i, samples += channels) {
        out[i] = weighted<Sample>(samples[0], samples[1], samples[2]);
    }
}

/// Light passes the coloured inks and then the black one. `flip` is xored to each sample
/// first: all bits where a high sample is much ink, none where it is little.
template <typename Sample>
void lumaThroughInks(const Sample *samples, int channels, int count, Sample flip, Sample *out)
{
    constexpr std::uint64_t most = std::numeric_limits<Sample>::max();
    for (int i = 0; i < count; ++i, samples += channels) {
        const auto light = [&](int channel) {
            return static_cast<Sample>(samples[channel] ^ flip);
        };
        const std::uint64_t luma = weighted<Sample>(light(0), light(1), light(2));
        out[i] = static_cast<Sample>((luma * light(3) + most / 2) / most);
    }
}

/// The sRGB value (IEC 61966-2-1) of the grey that has the given lightness L* (CIE 15),
/// both from 0 to 1: files say lightness, everything else here is such a value.
double greyOfLightness(double lightness)
{
    const double root = (lightness + 0.16) / 1.16;
    const double luminance = lightness > 0.08 ? root * root * root : lightness * 2700 / 24389;
    return luminance <= 0.0031308 ? 12.92 * luminance
                                  : 1.055 * std::pow(luminance, 1 / 2.4) - 0.055;
}

template <typename Sample>
Sample labTone(std::size_t lightness)
{
    constexpr double most = std::numeric_limits<Sample>::max();
    return static_cast<Sample>(
        std::lround(most * greyOfLightness(static_cast<double>(lightness) / most)));
}

std::array<std::uint8_t, 256> toneOf(const SampleLayout &layout)
{
    if (layout.kind == SampleKind::palette) {
        return layout.palette;
    }
    std::array<std::uint8_t, 256> tone{};
    for (std::size_t i = 0; i < tone.size(); ++i) {
        tone[i] = layout.kind == SampleKind::lab            ? labTone<std::uint8_t>(i)
                  : layout.kind == SampleKind::invertedGrey ? static_cast<std::uint8_t>(255 - i)
                                                            : static_cast<std::uint8_t>(i);
    }
    return tone;
}

} // namespace

void lumaFromFirst(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    if (channels == 1) {
        std::memcpy(out, samples, static_cast<std::size_t>(count));
        return;
    }
    for (int i = 0; i < count; ++i, samples += channels) {
        out[i] = samples[0];
    }
}

void lumaFromInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    lumaThroughInks<std::uint8_t>(samples, channels, count, 0xFF, out);
}

void lumaFromInvertedInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    lumaThroughInks<std::uint8_t>(samples, channels, count, 0, out);
}

bool isConvertible(const SampleLayout &layout)
{
    if (layout.channels < colourChannels(layout.kind)) {
        return false;
    }
    switch (layout.type) {
    case SampleType::uint8:
        return true;
    case SampleType::uint16:
        return layout.kind != SampleKind::palette;
    case SampleType::uint32:
    case SampleType::float32:
    case SampleType::float64:
        break;
    }
    return layout.kind == SampleKind::grey || layout.kind == SampleKind::invertedGrey ||
           layout.kind == SampleKind::rgb;
}

float nominalWhite(SampleType type)
{
    switch (type) {
    case SampleType::uint8:
        return std::numeric_limits<std::uint8_t>::max();
    case SampleType::uint16:
        return std::numeric_limits<std::uint16_t>::max();
    case SampleType::uint32:
        return static_cast<float>(std::numeric_limits<std::uint32_t>::max());
    case SampleType::float32:
    case SampleType::float64:
        break;
    }
    return 1;
}

std::size_t sampleBytes(SampleType type)
{
    switch (type) {
    case SampleType::uint8:
        return 1;
    case SampleType::uint16:
        return 2;
    case SampleType::uint32:
    case SampleType::float32:
        return 4;
    case SampleType::float64:
        break;
    }
    return 8;
}

SampleLuma::SampleLuma(const SampleLayout &layout)
    : m_layout(layout),
      m_pixelBytes(sampleBytes(layout.type) * static_cast<std::size_t>(layout.channels)),
      m_levels{0, nominalWhite(layout.type)},
      m_tone(toneOf(layout))
{
    if (layout.kind == SampleKind::lab && layout.type == SampleType::uint16) {
        m_deepTone.resize(std::numeric_limits<std::uint16_t>::max() + std::size_t{1});
        for (std::size_t i = 0; i < m_deepTone.size(); ++i) {
            m_deepTone[i] = labTone<std::uint16_t>(i);
        }
    }
}

void SampleLuma::convertBytes(const std::uint8_t *samples, int count, std::uint8_t *out) const
{
    switch (m_layout.kind) {
    case SampleKind::grey:
        lumaFromFirst(samples, m_layout.channels, count, out);
        return;
    case SampleKind::rgb:
        lumaFromRgb(samples, m_layout.channels, count, out);
        return;
    case SampleKind::inks:
        lumaFromInks(samples, m_layout.channels, count, out);
        return;
    case SampleKind::invertedGrey:
    case SampleKind::palette:
    case SampleKind::lab:
        break;
    }
    for (int i = 0; i < count; ++i, samples += m_layout.channels) {
        out[i] = m_tone[samples[0]];
    }
}

void SampleLuma::deepLuma(const std::uint16_t *samples, int count, std::uint16_t *out) const
{
    const int channels = m_layout.channels;
    switch (m_layout.kind) {
    case SampleKind::rgb:
        lumaFromRgb(samples, channels, count, out);
        return;
    case SampleKind::inks:
        lumaThroughInks<std::uint16_t>(samples, channels, count, 0xFFFF, out);
        return;
    case SampleKind::lab:
        for (int i = 0; i < count; ++i, samples += channels) {
            out[i] = m_deepTone[samples[0]];
        }
        return;
    case SampleKind::grey:
    case SampleKind::invertedGrey:
    case SampleKind::palette:
        break;
    }
    const std::uint16_t flip = m_layout.kind == SampleKind::invertedGrey ? 0xFFFF : 0;
    for (int i = 0; i < count; ++i, samples += channels) {
        out[i] = static_cast<std::uint16_t>(samples[0] ^ flip);
    }
}

template <typename Sample>
void SampleLuma::wideLuma(const Sample *samples, int count, float *out) const
{
    const float white = nominalWhite(m_layout.type);
    for (int i = 0; i < count; ++i, samples += m_layout.channels) {
        const auto first = static_cast<float>(samples[0]);
        if (m_layout.kind == SampleKind::rgb) {
            out[i] = 0.299F * first + 0.587F * static_cast<float>(samples[1]) +
                     0.114F * static_cast<float>(samples[2]);
        } else {
            out[i] = m_layout.kind == SampleKind::invertedGrey ? white - first : first;
        }
    }
}

void SampleLuma::anyLuma(const void *samples, int count, float *out) const
{
    switch (m_layout.type) {
    case SampleType::uint8:
        return;
    case SampleType::uint16: {
        std::array<std::uint16_t, chunk> luma{};
        deepLuma(static_cast<const std::uint16_t *>(samples), count, luma.data());
        std::copy_n(luma.begin(), count, out);
        return;
    }
    case SampleType::uint32:
        wideLuma(static_cast<const std::uint32_t *>(samples), count, out);
        return;
    case SampleType::float32:
        wideLuma(static_cast<const float *>(samples), count, out);
        return;
    case SampleType::float64:
        wideLuma(static_cast<const double *>(samples), count, out);
        return;
    }
}

void SampleLuma::sample(const void *samples, int count, int first, int step,
                        LevelSampler &levels) const
{
    const auto *bytes = static_cast<const std::byte *>(samples);
    std::array<float, chunk> luma{};
    int next = first;
    for (int start = 0; start < count; start += chunk) {
        const int length = std::min(chunk, count - start);
        anyLuma(bytes + m_pixelBytes * static_cast<std::size_t>(start), length, luma.data());
        for (; next < start + length; next += step) {
            levels.add(luma[static_cast<std::size_t>(next - start)]);
        }
    }
}

void SampleLuma::convert(const void *samples, int count, std::uint8_t *out) const
{
    if (m_layout.type == SampleType::uint8) {
        convertBytes(static_cast<const std::uint8_t *>(samples), count, out);
        return;
    }
    const auto *bytes = static_cast<const std::byte *>(samples);
    for (int start = 0; start < count; start += chunk) {
        const int length = std::min(chunk, count - start);
        const void *piece = bytes + m_pixelBytes * static_cast<std::size_t>(start);
        if (m_layout.type == SampleType::uint16) {
            std::array<std::uint16_t, chunk> luma{};
            deepLuma(static_cast<const std::uint16_t *>(piece), length, luma.data());
            applyLevels(m_levels, luma.data(), length, out + start);
        } else {
            std::array<float, chunk> luma{};
            anyLuma(piece, length, luma.data());
            applyLevels(m_levels, luma.data(), length, out + start);
        }
    }
}

} // namespace quillmark
