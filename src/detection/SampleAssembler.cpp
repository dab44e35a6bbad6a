// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SampleAssembler.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace quillmark {
namespace {

/// Numbers of any width up to 16 bits, one behind the other.
class BitReader
{
public:
    explicit BitReader(const std::uint8_t *bytes) : m_next(bytes) {}

    std::uint32_t take(int bits)
    {
        while (m_held < bits) {
            m_window = m_window << 8U | *m_next++;
            m_held += 8;
        }
        m_held -= bits;
        return m_window >> static_cast<unsigned>(m_held) &
               ((1U << static_cast<unsigned>(bits)) - 1);
    }

private:
    const std::uint8_t *m_next;
    std::uint32_t m_window = 0;
    int m_held = 0;
};

/// Spreads numbers over the full range of the type, or keeps them where they are indices.
template <typename Sample>
void unpackBits(const std::uint8_t *stored, int bits, bool spread, std::size_t count, Sample *out)
{
    const std::uint32_t most = (1U << static_cast<unsigned>(bits)) - 1;
    const std::uint32_t full = spread ? std::numeric_limits<Sample>::max() : most;
    BitReader reader(stored);
    for (std::size_t i = 0; i < count; ++i) {
        out[i] = static_cast<Sample>((reader.take(bits) * full + most / 2) / most);
    }
}

void unpackTriples(const std::uint8_t *stored, std::size_t count, std::uint32_t *out)
{
    constexpr bool little = std::endian::native == std::endian::little;
    for (std::size_t i = 0; i < count; ++i, stored += 3) {
        const std::uint32_t low = stored[little ? 0 : 2];
        const std::uint32_t high = stored[little ? 2 : 0];
        out[i] = high << 24U | std::uint32_t{stored[1]} << 16U | low << 8U | high;
    }
}

/// IEEE 754, binary16.
float fromHalf(std::uint16_t half)
{
    const int exponent = half >> 10U & 0x1F;
    const int fraction = half & 0x3FF;
    float value = std::numeric_limits<float>::quiet_NaN();
    if (exponent == 0) {
        value = std::ldexp(static_cast<float>(fraction), -24);
    } else if (exponent < 31) {
        value = std::ldexp(static_cast<float>(fraction + 1024), exponent - 25);
    } else if (fraction == 0) {
        value = std::numeric_limits<float>::infinity();
    }
    return (half & 0x8000U) != 0 ? -value : value;
}

void unpackHalves(const std::uint8_t *stored, std::size_t count, float *out)
{
    for (std::size_t i = 0; i < count; ++i) {
        std::uint16_t half = 0;
        std::memcpy(&half, stored + 2 * i, sizeof half);
        out[i] = fromHalf(half);
    }
}

template <typename Sample>
void interleave(std::span<const std::uint8_t *const> planes, std::size_t count, std::uint8_t *out)
{
    auto *samples = reinterpret_cast<Sample *>(out);
    for (std::size_t plane = 0; plane < planes.size(); ++plane) {
        const auto *from = reinterpret_cast<const Sample *>(planes[plane]);
        for (std::size_t i = 0; i < count; ++i) {
            samples[i * planes.size() + plane] = from[i];
        }
    }
}

} // namespace

SampleAssembler::SampleAssembler(const TiffShape &shape)
    : m_shape(shape), m_unpacked(static_cast<std::size_t>(shape.planes))
{}

const void *SampleAssembler::assemble(std::span<const std::uint8_t *const> planes, int count)
{
    std::vector<const std::uint8_t *> ready;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        ready.push_back(unpack(planes[i], count, m_unpacked[i]));
    }
    if (ready.size() == 1) {
        return ready[0];
    }
    const std::size_t bytes = sampleBytes(m_shape.layout.type);
    const auto pixels = static_cast<std::size_t>(count);
    m_row.resize(pixels * ready.size() * bytes);
    switch (bytes) {
    case 1:
        interleave<std::uint8_t>(ready, pixels, m_row.data());
        break;
    case 2:
        interleave<std::uint16_t>(ready, pixels, m_row.data());
        break;
    case 4:
        interleave<std::uint32_t>(ready, pixels, m_row.data());
        break;
    default:
        interleave<std::uint64_t>(ready, pixels, m_row.data());
        break;
    }
    return m_row.data();
}

const std::uint8_t *SampleAssembler::unpack(const std::uint8_t *stored, int count,
                                            std::vector<std::uint8_t> &out) const
{
    if (m_shape.packing == SamplePacking::none) {
        return stored;
    }
    const std::size_t samples =
        static_cast<std::size_t>(count) * static_cast<std::size_t>(m_shape.planeChannels);
    out.resize(samples * sampleBytes(m_shape.layout.type));
    switch (m_shape.packing) {
    case SamplePacking::none:
        break;
    case SamplePacking::bits:
        if (m_shape.layout.type == SampleType::uint8) {
            const bool spread = m_shape.layout.kind != SampleKind::palette;
            unpackBits(stored, m_shape.bits, spread, samples, out.data());
        } else {
            unpackBits(stored, m_shape.bits, true, samples,
                       reinterpret_cast<std::uint16_t *>(out.data()));
        }
        break;
    case SamplePacking::triples:
        unpackTriples(stored, samples, reinterpret_cast<std::uint32_t *>(out.data()));
        break;
    case SamplePacking::halves:
        unpackHalves(stored, samples, reinterpret_cast<float *>(out.data()));
        break;
    }
    return out.data();
}

const void *SampleAssembler::assembleUnits(const std::uint8_t *block, int y, int count)
{
    const auto width = static_cast<std::size_t>(m_shape.unitWidth);
    const auto height = static_cast<std::size_t>(m_shape.unitHeight);
    const std::size_t unitBytes = width * height + 2;
    const std::size_t across = (static_cast<std::size_t>(m_shape.blockWidth) + width - 1) / width;
    const auto row = static_cast<std::size_t>(y);
    const auto pixels = static_cast<std::size_t>(count);
    const std::uint8_t *units = block + row / height * across * unitBytes;
    const std::size_t lumaRow = row % height * width;
    const bool coloured = m_shape.layout.channels > 1;
    m_row.resize(pixels * (coloured ? 3 : 1));
    std::uint8_t *out = m_row.data();
    for (std::size_t x = 0; x < pixels; ++x) {
        const std::uint8_t *unit = units + x / width * unitBytes;
        *out++ = unit[lumaRow + x % width];
        if (coloured) {
            *out++ = unit[unitBytes - 2];
            *out++ = unit[unitBytes - 1];
        }
    }
    return m_row.data();
}

} // namespace quillmark
