// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/TiffSamples.h"

#include <QFloat16>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>

namespace quillmark::test {
namespace {

std::uint16_t sixteenBits(double share)
{
    return static_cast<std::uint16_t>(std::lround(std::clamp(share, 0.0, 1.0) * 65535));
}

/// CIE L*a*b* (CIE 15) under D50 from sRGB (IEC 61966-2-1), whose matrix is adapted by
/// Bradford's method; as CIELAB or ICCLAB of TIFF have it.
TiffPixel labPixel(double red, double green, double blue, const TiffOptions &options)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    const double r = linear(red);
    const double g = linear(green);
    const double b = linear(blue);
    const auto root = [](double share) {
        return share > 216.0 / 24389 ? std::cbrt(share) : (share * 24389 / 27 + 16) / 116;
    };
    const double x = root((0.4360747 * r + 0.3850649 * g + 0.1430804 * b) / 0.96422);
    const double y = root(0.2225045 * r + 0.7168786 * g + 0.0606169 * b);
    const double z = root((0.0139322 * r + 0.0971045 * g + 0.7141733 * b) / 0.82521);
    const auto chroma = [&options](double value) {
        const int middle = options.photometric == TiffPhotometric::iccLab ? 128 : 0;
        if (options.bits == 8) {
            return static_cast<std::uint16_t>(((std::lround(value) + middle) & 0xFF) * 257);
        }
        return static_cast<std::uint16_t>(std::lround((value + middle) * 256));
    };
    return {sixteenBits(1.16 * y - 0.16), chroma(500 * (x - y)), chroma(200 * (y - z))};
}

TiffPixel inkPixel(double red, double green, double blue)
{
    const double white = std::max({red, green, blue});
    const auto ink = [white](double value) {
        return sixteenBits(white == 0 ? 0 : 1 - value / white);
    };
    return {ink(red), ink(green), ink(blue), sixteenBits(1 - white)};
}

/// ITU-T T.871: full range, chroma around the middle.
TiffPixel yCbCrPixel(double red, double green, double blue)
{
    const double luma = 0.299 * red + 0.587 * green + 0.114 * blue;
    return {sixteenBits(luma), sixteenBits((blue - luma) / 1.772 + 0.5),
            sixteenBits((red - luma) / 1.402 + 0.5)};
}

TiffPixel colourPixel(const RasterImage &image, const TiffOptions &options, int x, int y)
{
    const auto share = [&](int channel) {
        return image.at(x, y, image.channels == 1 ? 0 : channel) / 65535.0;
    };
    const std::uint16_t first = image.at(x, y, 0);
    switch (resolvedPhotometric(options, image)) {
    case TiffPhotometric::automatic:
    case TiffPhotometric::minIsBlack:
        return {first};
    case TiffPhotometric::minIsWhite:
    case TiffPhotometric::palette: // whose colours run from white to black
        return {static_cast<std::uint16_t>(65535 - first)};
    case TiffPhotometric::cmyk:
        return inkPixel(share(0), share(1), share(2));
    case TiffPhotometric::lab:
    case TiffPhotometric::iccLab:
        return labPixel(share(0), share(1), share(2), options);
    case TiffPhotometric::yCbCr:
        if (options.compression == TiffCompression::jpeg) {
            break; // the library converts
        }
        return yCbCrPixel(share(0), share(1), share(2));
    case TiffPhotometric::rgb:
        break;
    }
    return {sixteenBits(share(0)), sixteenBits(share(1)), sixteenBits(share(2))};
}

class SamplePacker
{
public:
    explicit SamplePacker(const TiffOptions &options) : m_options(options) {}

    void add(std::uint16_t sample)
    {
        if (m_options.floatingPoint) {
            addFloat(sample);
        } else if (m_options.bits == 64) {
            addBytes(sample * 0x0001'0001'0001'0001U);
        } else if (m_options.bits == 32) {
            addBytes((sample * 65537U) >> halving());
        } else if (m_options.bits == 24) {
            addTriple(static_cast<std::uint32_t>(sample << 8 | sample >> 8));
        } else if (m_options.bits == 16) {
            addBytes(static_cast<std::uint16_t>(sample >> halving()));
        } else {
            addBits(sample);
        }
    }

    /// Rows begin on a byte.
    void endRow() { m_bitsUsed = 0; }

    std::vector<std::uint8_t> take() { return std::move(m_bytes); }

private:
    template <typename Value>
    void addBytes(Value value)
    {
        const auto bytes = std::bit_cast<std::array<std::uint8_t, sizeof(Value)>>(value);
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }

    unsigned halving() const { return m_options.signedNumbers ? 1 : 0; }

    /// In the machine's order, as libtiff takes it.
    void addTriple(std::uint32_t value)
    {
        const auto bytes = std::bit_cast<std::array<std::uint8_t, 4>>(value);
        const int first = std::endian::native == std::endian::little ? 0 : 1;
        m_bytes.insert(m_bytes.end(), bytes.begin() + first, bytes.begin() + first + 3);
    }

    void addFloat(std::uint16_t sample)
    {
        const float share = static_cast<float>(sample) / 65535;
        float value = m_options.floatBlack + share * (m_options.floatWhite - m_options.floatBlack);
        if (m_options.floatStray && m_count++ % 50 == 7) {
            value = *m_options.floatStray;
        }
        if (m_options.bits == 64) {
            addBytes(double{value});
        } else if (m_options.bits == 16) {
            addBytes(std::bit_cast<std::uint16_t>(qfloat16(value)));
        } else {
            addBytes(value);
        }
    }

    void addBits(std::uint16_t sample)
    {
        const int most = (1 << (m_options.bits - static_cast<int>(halving()))) - 1;
        const int value = (sample * most + 32767) / 65535;
        for (int bit = m_options.bits - 1; bit >= 0; --bit) {
            if (m_bitsUsed == 0) {
                m_bytes.push_back(0);
            }
            m_bytes.back() =
                static_cast<std::uint8_t>(m_bytes.back() | (value >> bit & 1) << (7 - m_bitsUsed));
            m_bitsUsed = (m_bitsUsed + 1) % 8;
        }
    }

    const TiffOptions &m_options;
    std::vector<std::uint8_t> m_bytes;
    int m_bitsUsed = 0;
    int m_count = 0;
};

} // namespace

TiffPhotometric resolvedPhotometric(const TiffOptions &options, const RasterImage &image)
{
    if (options.photometric != TiffPhotometric::automatic) {
        return options.photometric;
    }
    return image.channels == 1 ? TiffPhotometric::minIsBlack : TiffPhotometric::rgb;
}

TiffPixel storedPixel(const RasterImage &image, const TiffOptions &options, int x, int y)
{
    x = std::min(x, image.width - 1);
    y = std::min(y, image.height - 1);
    TiffPixel pixel = colourPixel(image, options, x, y);
    for (int i = 0; i < options.extraChannels; ++i) {
        pixel.push_back(static_cast<std::uint16_t>((x * 977 + y * 3571 + i) % 65536));
    }
    return pixel;
}

std::vector<std::uint8_t> packedSamples(const RasterImage &image, const TiffOptions &options,
                                        const TiffBlock &block)
{
    SamplePacker packer(options);
    for (int y = block.y; y < block.y + block.height; ++y) {
        for (int x = block.x; x < block.x + block.width; ++x) {
            const TiffPixel pixel = storedPixel(image, options, x, y);
            if (block.channel) {
                packer.add(pixel[static_cast<std::size_t>(*block.channel)]);
                continue;
            }
            for (const std::uint16_t sample : pixel) {
                packer.add(sample);
            }
        }
        packer.endRow();
    }
    return packer.take();
}

std::vector<std::uint8_t> packedUnits(const RasterImage &image, const TiffOptions &options,
                                      const TiffBlock &block)
{
    const int across = options.chromaSubsampling;
    const int down = options.chromaSubsamplingDown.value_or(across);
    SamplePacker packer(options);
    for (int y = block.y; y < block.y + block.height; y += down) {
        for (int x = block.x; x < block.x + block.width; x += across) {
            for (int i = 0; i < across * down; ++i) {
                packer.add(storedPixel(image, options, x + i % across, y + i / across)[0]);
            }
            const TiffPixel pixel = storedPixel(image, options, x, y);
            packer.add(pixel[1]);
            packer.add(pixel[2]);
        }
    }
    return packer.take();
}

} // namespace quillmark::test
