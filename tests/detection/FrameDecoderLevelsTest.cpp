// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"
#include "detection/FramePictures.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

struct LevelsCase {
    std::string name;
    TiffOptions options;
};

void PrintTo(const LevelsCase &levels, std::ostream *out)
{
    *out << levels.name;
}

class DarkScan : public ::testing::TestWithParam<LevelsCase>
{};

TEST_P(DarkScan, isStretched)
{
    const TempDir folder;
    writeTiff(folder / "dark.tif", squeezed(greyPicture(), 0.001, 0.02), GetParam().options);

    const DecodedFrame frame = decodeFrame(folder / "dark.tif");

    EXPECT_LE(difference(frame.luma, expectedLuma(greyPicture())).greatest, 2);
}

std::vector<LevelsCase> darkScans()
{
    using enum TiffCompression;
    using enum TiffPhotometric;
    return {
        {"grey", {.bits = 16}},
        {"invertedGrey", {.bits = 16, .photometric = minIsWhite}},
        {"rgb", {.bits = 16, .photometric = rgb}},
        {"rgbAndInfrared", {.bits = 16, .photometric = rgb, .extraChannels = 1}},
        {"rgbInPlanes", {.bits = 16, .photometric = rgb, .planarSeparate = true}},
        {"bigEndian", {.bits = 16, .bigEndian = true}},
        {"oneStrip", {.bits = 16, .rowsPerStrip = 0}},
        {"compressedStrips", {.bits = 16, .compression = lzw, .rowsPerStrip = 1}},
        {"oneCompressedStrip", {.bits = 16, .compression = deflate, .rowsPerStrip = 0}},
        {"tiles", {.bits = 16, .tileWidth = 16, .tileLength = 16}},
        {"words", {.bits = 32}},
        {"floats", {.bits = 32, .floatingPoint = true}},
        {"rgbOfFloats", {.bits = 32, .photometric = rgb, .floatingPoint = true}},
    };
}

INSTANTIATE_TEST_SUITE_P(FrameDecoder, DarkScan, ::testing::ValuesIn(darkScans()),
                         [](const auto &tested) { return tested.param.name; });

/// Every pixel a square of pixels.
RasterImage enlarged(const RasterImage &image, int times)
{
    RasterImage large{image.width * times, image.height * times, image.channels};
    for (int y = 0; y < large.height; ++y) {
        for (int x = 0; x < large.width; ++x) {
            for (int channel = 0; channel < image.channels; ++channel) {
                large.samples.push_back(image.at(x / times, y / times, channel));
            }
        }
    }
    return large;
}

TEST(FrameDecoder, stretchesALargeScanByAPartOfIt)
{
    const RasterImage large = enlarged(greyPicture(), 8);
    const LumaImage expected = expectedLuma(large);
    const TempDir folder;
    for (const TiffOptions &options :
         {TiffOptions{.bits = 16},
          {.bits = 16, .compression = TiffCompression::lzw},
          {.bits = 16, .compression = TiffCompression::lzw, .rowsPerStrip = 0},
          {.bits = 16, .tileWidth = 128, .tileLength = 64}}) {
        writeTiff(folder / "dark.tif", squeezed(large, 0, 0.01), options);

        EXPECT_LE(difference(decodeFrame(folder / "dark.tif").luma, expected).greatest, 3);
    }
}

TEST(FrameDecoder, stretchesInSpiteOfDefectivePixels)
{
    RasterImage image = squeezed(greyPicture(), 0.01, 0.05);
    image.samples[5000] = 65535;
    image.samples[9000] = 65535;
    image.samples[12000] = 0;
    const TempDir folder;
    writeTiff(folder / "dark.tif", image, {.bits = 16});

    const DecodedFrame frame = decodeFrame(folder / "dark.tif");

    LumaImage expected = expectedLuma(greyPicture());
    expected.pixels[5000] = 255;
    expected.pixels[9000] = 255;
    expected.pixels[12000] = 0;
    EXPECT_LE(difference(frame.luma, expected).greatest, 3);
}

TEST(FrameDecoder, leavesADeepScanThatFillsItsRangeAsItsTwinOf8Bits)
{
    const TempDir folder;
    for (const RasterImage &image : {colourPicture(), squeezed(greyPicture(), 0.25, 0.8)}) {
        writeTiff(folder / "8.tif", image, {.bits = 8});
        writeTiff(folder / "16.tif", image, {.bits = 16});
        writeTiff(folder / "32.tif", image, {.bits = 32});
        writeTiff(folder / "float.tif", image, {.bits = 32, .floatingPoint = true});

        const DecodedFrame twin = decodeFrame(folder / "8.tif");
        for (const char *name : {"16.tif", "32.tif", "float.tif"}) {
            EXPECT_LE(difference(decodeFrame(folder / name).luma, twin.luma).greatest, 1) << name;
        }
    }
}

TEST(FrameDecoder, leavesAnEvenDeepScanAsItIs)
{
    const TempDir folder;
    const RasterImage even{40, 30, 1, std::vector<std::uint16_t>(1200, 0x4040)};
    writeTiff(folder / "16.tif", even, {.bits = 16});
    writeTiff(folder / "float.tif", even, {.bits = 32, .floatingPoint = true});

    for (const char *name : {"16.tif", "float.tif"}) {
        const LumaImage luma = decodeFrame(folder / name).luma;
        EXPECT_EQ(luma.pixels, std::vector<std::uint8_t>(1200, 0x40)) << name;
    }
}

TEST(FrameDecoder, takesTheRangeOfFloatsFromThePicture)
{
    const TempDir folder;
    writeTiff(folder / "float.tif", greyPicture(),
              {.bits = 32, .floatingPoint = true, .floatBlack = -3, .floatWhite = 5000});

    const DecodedFrame frame = decodeFrame(folder / "float.tif");

    EXPECT_LE(difference(frame.luma, expectedLuma(greyPicture())).greatest, 1);
}

TEST(FrameDecoder, takesNoHarmFromFloatsThatAreNoNumbers)
{
    using Limits = std::numeric_limits<float>;
    const TempDir folder;
    for (const float stray : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        writeTiff(folder / "float.tif", greyPicture(),
                  {.bits = 32,
                   .floatingPoint = true,
                   .floatBlack = 10,
                   .floatWhite = 20,
                   .floatStray = stray});

        const DecodedFrame frame = decodeFrame(folder / "float.tif");

        const LumaImage expected = expectedLuma(greyPicture());
        std::size_t same = 0;
        for (std::size_t i = 0; i < expected.pixels.size(); ++i) {
            same += std::abs(frame.luma.pixels[i] - expected.pixels[i]) <= 1 ? 1U : 0U;
        }
        EXPECT_GE(same, expected.pixels.size() * 97 / 100) << stray;
    }
}

} // namespace
} // namespace quillmark::test
