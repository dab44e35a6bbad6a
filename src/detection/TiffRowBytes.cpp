// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffRowBytes.h"

#include "detection/SampleKernels.h"

#include <cstddef>

namespace quillmark {
namespace {

/// Differences wrap around, as the samples do.
template <typename Sample>
void addDifferencesOf(std::span<std::uint8_t> row, std::size_t channels)
{
    auto *samples = reinterpret_cast<Sample *>(row.data());
    const std::size_t count = row.size() / sizeof(Sample);
    for (std::size_t i = channels; i < count; ++i) {
        samples[i] = static_cast<Sample>(samples[i] + samples[i - channels]);
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
    const auto step = static_cast<std::size_t>(channels);
    switch (bits) {
    case 8:
        addDifferencesOf<std::uint8_t>(row, step);
        break;
    case 16:
        addDifferencesOf<std::uint16_t>(row, step);
        break;
    case 32:
        addDifferencesOf<std::uint32_t>(row, step);
        break;
    default:
        break;
    }
}

} // namespace quillmark
