// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SampleLayout.h"

#include <limits>

namespace quillmark {

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

int colourChannels(SampleKind kind, ChromaCoding chroma)
{
    switch (kind) {
    case SampleKind::rgb:
        return 3;
    case SampleKind::inks:
        return 4;
    case SampleKind::yCbCr:
    case SampleKind::lab:
        return chroma == ChromaCoding::absent ? 1 : 3;
    case SampleKind::grey:
    case SampleKind::invertedGrey:
    case SampleKind::palette:
        break;
    }
    return 1;
}

bool isConvertible(const SampleLayout &layout)
{
    if (layout.channels < colourChannels(layout.kind, layout.chroma)) {
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
    const bool luma = layout.kind == SampleKind::yCbCr && layout.chroma == ChromaCoding::absent;
    return luma || layout.kind == SampleKind::grey || layout.kind == SampleKind::invertedGrey ||
           layout.kind == SampleKind::rgb;
}

} // namespace quillmark
