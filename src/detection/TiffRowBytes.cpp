// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffRowBytes.h"

#include "detection/SampleKernels.h"

#include <array>
#include <cstddef>

namespace quillmark {
namespace {

/// Differences wrap around, as the samples do.
template <typename Sample>
void addToPixelBefore(Sample *samples, std::size_t count, std::size_t channels)
{
    for (std::size_t i = channels; i < count; ++i) {
        samples[i] = static_cast<Sample>(samples[i] + samples[i - channels]);
    }
}

/// The same for a number of channels so small that the sums stay in registers.
template <std::size_t channels, typename Sample>
void addToSums(Sample *samples, std::size_t count)
{
    std::array<Sample, channels> sums{};
    for (std::size_t i = 0; i + channels <= count; i += channels) {
        for (std::size_t channel = 0; channel < channels; ++channel) {
            sums[channel] = static_cast<Sample>(sums[channel] + samples[i + channel]);
            samples[i + channel] = sums[channel];
        }
    }
}

template <typename Sample>
void addDifferencesOf(std::span<std::uint8_t> row, int channels)
{
    auto *samples = reinterpret_cast<Sample *>(row.data());
    const std::size_t count = row.size() / sizeof(Sample);
    switch (channels) {
    case 1:
        addToSums<1>(samples, count);
        break;
    case 3:
        addToSums<3>(samples, count);
        break;
    case 4:
        addToSums<4>(samples, count);
        break;
    default:
        addToPixelBefore(samples, count, static_cast<std::size_t>(channels));
        break;
    }
}

} // namespace

void toMachineOrder(std::span<std::uint8_t> bytes, const TiffShape &shape)
{
    const auto size = static_cast<tmsize_t>(bytes.size());
    if (shape.reversed) {
        TIFFReverseBits(bytes.data(), size);
    }
    if (!shape.swapped) {
        return;
    }
    switch (shape.bits) {
    case 16:
        swapBytes(reinterpret_cast<std::uint16_t *>(bytes.data()), bytes.size() / 2);
        break;
    case 24:
        TIFFSwabArrayOfTriples(bytes.data(), size / 3);
        break;
    case 32:
        TIFFSwabArrayOfLong(reinterpret_cast<std::uint32_t *>(bytes.data()), size / 4);
        break;
    case 64:
        TIFFSwabArrayOfLong8(reinterpret_cast<std::uint64_t *>(bytes.data()), size / 8);
        break;
    default:
        break;
    }
}

void addDifferences(std::span<std::uint8_t> row, int bits, int channels)
{
    switch (bits) {
    case 8:
        addDifferencesOf<std::uint8_t>(row, channels);
        break;
    case 16:
        addDifferencesOf<std::uint16_t>(row, channels);
        break;
    case 32:
        addDifferencesOf<std::uint32_t>(row, channels);
        break;
    default:
        break;
    }
}

} // namespace quillmark
