// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SampleConverter.h"

#include "detection/LabColour.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace quillmark {
namespace {

/// As many pixels as are converted at a time where there is a step between, so that what
/// lies between stays in the first cache.
constexpr int chunk = 1024;

template <typename Output>
constexpr std::size_t chunkSamples = std::size_t{chunk} * Output::channels;

template <typename Output, typename Sample>
void convertRgb(const Sample *samples, int channels, int count, Sample *out)
{
    if constexpr (Output::channels == 1) {
        if (channels == 3 || channels == 4) {
            lumaOfRgb(samples, channels, count, out);
            return;
        }
    }
    for (int i = 0; i < count; ++i, samples += channels) {
        Output::putRgb(out + i * Output::channels, samples[0], samples[1], samples[2]);
    }
}

/// `flip` is xored to each sample first: all bits where a high sample is much ink, none where
/// it is little.
template <typename Output, typename Sample>
void convertLight(const Sample *samples, int channels, int count, Sample flip, Sample *out)
{
    for (int i = 0; i < count; ++i, samples += channels) {
        const auto light = [&](int channel) {
            return static_cast<Sample>(samples[channel] ^ flip);
        };
        Output::putLight(out + i * Output::channels, light(0), light(1), light(2), light(3));
    }
}

template <typename Output, typename Sample>
void convertYCbCr(const Sample *samples, int channels, int count, Sample *out)
{
    for (int i = 0; i < count; ++i, samples += channels) {
        Output::putYCbCr(out + i * Output::channels, samples[0], samples[1], samples[2]);
    }
}

template <typename Sample>
Sample labTone(std::size_t lightness)
{
    constexpr double most = std::numeric_limits<Sample>::max();
    return static_cast<Sample>(
        std::lround(most * greyOfLightness(static_cast<double>(lightness) / most)));
}

/// a* or b*: as many steps to the unit as 16 bits have over 8.
template <typename Sample>
float labChroma(Sample sample, ChromaCoding coding)
{
    constexpr int unit = sizeof(Sample) == 1 ? 1 : 256;
    constexpr int middle = 128 * unit;
    const int number = coding == ChromaCoding::middle
                           ? sample - middle
                           : static_cast<std::make_signed_t<Sample>>(sample);
    return static_cast<float>(number) / unit;
}

template <typename Output, typename Sample>
void convertLab(const Sample *samples, const SampleLayout &layout, int count, Sample *out)
{
    constexpr float most = std::numeric_limits<Sample>::max();
    for (int i = 0; i < count; ++i, samples += layout.channels) {
        const std::array<float, 3> rgb =
            rgbOfLab(static_cast<float>(samples[0]) / most, labChroma(samples[1], layout.chroma),
                     labChroma(samples[2], layout.chroma));
        const auto scaled = [](float share) {
            const float value = share * most + 0.5F;
            return static_cast<Sample>(value);
        };
        Output::putRgb(out + i * Output::channels, scaled(rgb[0]), scaled(rgb[1]), scaled(rgb[2]));
    }
}

} // namespace

template <typename Output>
void convertFirst(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    if (channels == 1 && Output::channels == 1) {
        std::memcpy(out, samples, static_cast<std::size_t>(count));
        return;
    }
    for (int i = 0; i < count; ++i, samples += channels) {
        Output::putGrey(out + i * Output::channels, samples[0]);
    }
}

template <typename Output>
void convertInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    convertLight<Output, std::uint8_t>(samples, channels, count, 0xFF, out);
}

template <typename Output>
void convertInvertedInks(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    convertLight<Output, std::uint8_t>(samples, channels, count, 0, out);
}

template <typename Output>
SampleConverter<Output>::SampleConverter(const SampleLayout &layout)
    : m_layout(layout),
      m_pixelBytes(sampleBytes(layout.type) * static_cast<std::size_t>(layout.channels)),
      m_levels{0, nominalWhite(layout.type)},
      m_wholeLevels(layout.type == SampleType::uint16 ? m_levels : Levels{})
{
    fillTones();
}

template <typename Output>
void SampleConverter<Output>::setLevels(const Levels &levels)
{
    m_levels = levels;
    if (m_layout.type == SampleType::uint16) {
        m_wholeLevels = WholeLevels(levels);
    }
}

template <typename Output>
void SampleConverter<Output>::fillTones()
{
    for (std::size_t i = 0; i < m_tones.size(); ++i) {
        const auto index = static_cast<std::uint8_t>(i);
        std::uint8_t *tone = m_tones[i].data();
        if (m_layout.kind == SampleKind::palette) {
            const auto &[red, green, blue] = m_layout.palette[i];
            std::array<std::uint16_t, Output::channels> deep{};
            Output::putRgb(deep.data(), red, green, blue);
            applyLevels(WholeLevels({0, nominalWhite(SampleType::uint16)}), deep.data(),
                        Output::channels, tone);
        } else if (m_layout.kind == SampleKind::lab) {
            Output::putGrey(tone, labTone<std::uint8_t>(i));
        } else {
            const bool inverted = m_layout.kind == SampleKind::invertedGrey;
            Output::putGrey(tone, static_cast<std::uint8_t>(inverted ? 255 - index : index));
        }
    }
    if (m_layout.kind == SampleKind::lab && m_layout.type == SampleType::uint16) {
        m_deepTones.resize(std::numeric_limits<std::uint16_t>::max() + std::size_t{1});
        for (std::size_t i = 0; i < m_deepTones.size(); ++i) {
            m_deepTones[i] = labTone<std::uint16_t>(i);
        }
    }
}

template <typename Output>
void SampleConverter<Output>::convertBytes(const std::uint8_t *samples, int count,
                                           std::uint8_t *out) const
{
    const bool coloured = m_layout.chroma != ChromaCoding::absent;
    const int channels = m_layout.channels;
    switch (m_layout.kind) {
    case SampleKind::grey:
        convertFirst<Output>(samples, channels, count, out);
        return;
    case SampleKind::rgb:
        convertRgb<Output>(samples, channels, count, out);
        return;
    case SampleKind::inks:
        convertInks<Output>(samples, channels, count, out);
        return;
    case SampleKind::yCbCr:
        coloured ? convertYCbCr<Output>(samples, channels, count, out)
                 : convertFirst<Output>(samples, channels, count, out);
        return;
    case SampleKind::lab:
        if (coloured) {
            convertLab<Output>(samples, m_layout, count, out);
            return;
        }
        break;
    case SampleKind::invertedGrey:
    case SampleKind::palette:
        break;
    }
    for (int i = 0; i < count; ++i, samples += channels) {
        std::copy_n(m_tones[samples[0]].data(), Output::channels, out + i * Output::channels);
    }
}

template <typename Output>
void SampleConverter<Output>::convertDeep(const std::uint16_t *samples, int count,
                                          std::uint16_t *out) const
{
    const bool coloured = m_layout.chroma != ChromaCoding::absent;
    const int channels = m_layout.channels;
    switch (m_layout.kind) {
    case SampleKind::rgb:
        convertRgb<Output>(samples, channels, count, out);
        return;
    case SampleKind::inks:
        convertLight<Output, std::uint16_t>(samples, channels, count, 0xFFFF, out);
        return;
    case SampleKind::yCbCr:
        if (coloured) {
            convertYCbCr<Output>(samples, channels, count, out);
            return;
        }
        break;
    case SampleKind::lab:
        if (coloured) {
            convertLab<Output>(samples, m_layout, count, out);
            return;
        }
        for (int i = 0; i < count; ++i, samples += channels) {
            Output::putGrey(out + i * Output::channels, m_deepTones[samples[0]]);
        }
        return;
    case SampleKind::grey:
    case SampleKind::invertedGrey:
    case SampleKind::palette:
        break;
    }
    const std::uint16_t flip = m_layout.kind == SampleKind::invertedGrey ? 0xFFFF : 0;
    for (int i = 0; i < count; ++i, samples += channels) {
        Output::putGrey(out + i * Output::channels, static_cast<std::uint16_t>(samples[0] ^ flip));
    }
}

template <typename Output>
template <typename Sample>
void SampleConverter<Output>::convertWide(const Sample *samples, int count, float *out) const
{
    const float white = nominalWhite(m_layout.type);
    for (int i = 0; i < count; ++i, samples += m_layout.channels, out += Output::channels) {
        const auto first = static_cast<float>(samples[0]);
        if (m_layout.kind == SampleKind::rgb) {
            Output::putRgb(out, first, static_cast<float>(samples[1]),
                           static_cast<float>(samples[2]));
        } else {
            Output::putGrey(out, m_layout.kind == SampleKind::invertedGrey ? white - first : first);
        }
    }
}

template <typename Output>
void SampleConverter<Output>::sample(const void *samples, int count, int first, int step,
                                     LevelSampler &levels) const
{
    const auto *bytes = static_cast<const std::byte *>(samples);
    std::array<float, chunkSamples<Output>> converted{};
    int next = first;
    for (int start = 0; start < count; start += chunk) {
        const int length = std::min(chunk, count - start);
        tones(bytes + m_pixelBytes * static_cast<std::size_t>(start), length, converted.data());
        sampleTones(converted.data(), length, next - start, step, levels);
        while (next < start + length) {
            next += step;
        }
    }
}

template <typename Output>
void SampleConverter<Output>::convert(const void *samples, int count, std::uint8_t *out) const
{
    if (m_layout.type == SampleType::uint8) {
        convertBytes(static_cast<const std::uint8_t *>(samples), count, out);
        return;
    }
    const bool isTone = m_layout.kind == SampleKind::grey && m_layout.channels == 1;
    if (m_layout.type == SampleType::uint16 && isTone && Output::channels == 1) {
        convertTones(samples, count, out);
        return;
    }
    const auto *bytes = static_cast<const std::byte *>(samples);
    for (int start = 0; start < count; start += chunk) {
        const int length = std::min(chunk, count - start);
        std::array<float, chunkSamples<Output>> converted{};
        tones(bytes + m_pixelBytes * static_cast<std::size_t>(start), length, converted.data());
        convertTones(converted.data(), length, out + std::ptrdiff_t{start} * Output::channels);
    }
}

template <typename Output>
std::size_t SampleConverter<Output>::toneBytes() const
{
    return (m_layout.type == SampleType::uint16 ? sizeof(std::uint16_t) : sizeof(float)) *
           Output::channels;
}

template <typename Output>
void SampleConverter<Output>::tones(const void *samples, int count, void *out) const
{
    switch (m_layout.type) {
    case SampleType::uint8:
        return;
    case SampleType::uint16:
        convertDeep(static_cast<const std::uint16_t *>(samples), count,
                    static_cast<std::uint16_t *>(out));
        return;
    case SampleType::uint32:
        convertWide(static_cast<const std::uint32_t *>(samples), count, static_cast<float *>(out));
        return;
    case SampleType::float32:
        convertWide(static_cast<const float *>(samples), count, static_cast<float *>(out));
        return;
    case SampleType::float64:
        convertWide(static_cast<const double *>(samples), count, static_cast<float *>(out));
        return;
    }
}

template <typename Output>
void SampleConverter<Output>::sampleTones(const void *tones, int count, int first, int step,
                                          LevelSampler &levels) const
{
    const bool whole = m_layout.type == SampleType::uint16;
    for (int pixel = first; pixel < count; pixel += step) {
        for (int i = pixel * Output::channels; i < (pixel + 1) * Output::channels; ++i) {
            levels.add(whole ? static_cast<float>(static_cast<const std::uint16_t *>(tones)[i])
                             : static_cast<const float *>(tones)[i]);
        }
    }
}

template <typename Output>
void SampleConverter<Output>::convertTones(const void *tones, int count, std::uint8_t *out) const
{
    const int samples = count * Output::channels;
    if (m_layout.type == SampleType::uint16) {
        applyLevels(m_wholeLevels, static_cast<const std::uint16_t *>(tones), samples, out);
    } else {
        applyLevels(m_levels, static_cast<const float *>(tones), samples, out);
    }
}

template void convertFirst<LumaOutput>(const std::uint8_t *, int, int, std::uint8_t *);
template void convertFirst<RgbOutput>(const std::uint8_t *, int, int, std::uint8_t *);
template void convertInks<LumaOutput>(const std::uint8_t *, int, int, std::uint8_t *);
template void convertInks<RgbOutput>(const std::uint8_t *, int, int, std::uint8_t *);
template void convertInvertedInks<LumaOutput>(const std::uint8_t *, int, int, std::uint8_t *);
template void convertInvertedInks<RgbOutput>(const std::uint8_t *, int, int, std::uint8_t *);
template class SampleConverter<LumaOutput>;
template class SampleConverter<RgbOutput>;

} // namespace quillmark
