// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/zoo/Zoo.h"

#include "payload/SlatePayloadJson.h"
#include "support/Samples.h"
#include "support/simulator/PlainCode.h"
#include "support/simulator/QrMatrix.h"

#include <array>

namespace quillmark::test {
namespace {

constexpr int width = 581;
constexpr int height = 547;

QByteArray slateBytes()
{
    return slatePayloadToJson(minimalPayload());
}

/// Each channel from 0 to 1.
using Colour = std::array<double, 3>;

void append(RasterImage &image, const Colour &colour)
{
    for (const double value : colour) {
        image.samples.push_back(static_cast<std::uint16_t>(value * 65535 + 0.5));
    }
}

Colour background(int x, int y)
{
    const double across = static_cast<double>(x) / (width - 1);
    const double down = static_cast<double>(y) / (height - 1);
    return {across, down, 1 - across};
}

RasterImage drawnSlate()
{
    const LumaImage code = drawCode(encodeQr(slateBytes(), QrLevel::M, 10), 8);
    const int left = (width - code.width) / 2;
    const int top = (height - code.height) / 2;
    RasterImage image{width, height, 3, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int column = x - left;
            const int row = y - top;
            if (column < 0 || row < 0 || column >= code.width || row >= code.height) {
                append(image, background(x, y));
            } else if (code.row(row)[column] != 0) {
                append(image, {0.98, 0.95, 0.85});
            } else {
                append(image, {0.12, 0.11, 0.2});
            }
        }
    }
    return image;
}

} // namespace

void PrintTo(const ZooRow &row, std::ostream *out)
{
    *out << row.how;
}

QString slateText()
{
    return QString::fromUtf8(slateBytes());
}

RasterImage colourSlate()
{
    static const RasterImage slate = drawnSlate();
    return slate;
}

RasterImage greySlate()
{
    const RasterImage coloured = colourSlate();
    RasterImage image{width, height, 1, {}};
    for (std::size_t i = 0; i < coloured.samples.size(); i += 3) {
        image.samples.push_back(coloured.samples[i]);
    }
    return image;
}

RasterImage turned(const RasterImage &upright, int orientation)
{
    // Where a stored pixel comes from is found with a picture of the pixels' numbers, as three
    // bytes each.
    const auto planeOf = [&](unsigned shift) {
        LumaImage plane{upright.width, upright.height, {}};
        for (int i = 0; i < upright.width * upright.height; ++i) {
            plane.pixels.push_back(
                static_cast<std::uint8_t>(static_cast<unsigned>(i) >> shift & 0xFFU));
        }
        return storedWithOrientation(plane, orientation);
    };
    const std::array<LumaImage, 3> planes{planeOf(0), planeOf(8), planeOf(16)};
    RasterImage stored{planes[0].width, planes[0].height, upright.channels, {}};
    for (std::size_t i = 0; i < planes[0].pixels.size(); ++i) {
        const std::size_t from =
            planes[0].pixels[i] | planes[1].pixels[i] << 8 | planes[2].pixels[i] << 16;
        for (int channel = 0; channel < upright.channels; ++channel) {
            stored.samples.push_back(
                upright.samples[from * static_cast<std::size_t>(upright.channels) +
                                static_cast<std::size_t>(channel)]);
        }
    }
    return stored;
}

RasterImage blankFrame()
{
    RasterImage image{width, height, 3, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            append(image, background(x, y));
        }
    }
    return image;
}

} // namespace quillmark::test
