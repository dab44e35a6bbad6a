// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"
#include "detection/FramePictures.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

struct TiffCase {
    std::string name;
    RasterImage image;
    TiffOptions options;
    int tolerance = 1; ///< in levels
};

void PrintTo(const TiffCase &variant, std::ostream *out)
{
    *out << variant.name;
}

class TiffVariant : public ::testing::TestWithParam<TiffCase>
{};

TEST_P(TiffVariant, decodesToLuma)
{
    const TempDir folder;
    const std::filesystem::path file = folder / "frame.tif";
    writeTiff(file, GetParam().image, GetParam().options);

    const DecodedFrame frame = decodeFrame(file);

    const LumaImage expected = expectedLuma(GetParam().image, GetParam().options.bits);
    ASSERT_EQ(frame.luma.width, expected.width);
    ASSERT_EQ(frame.luma.height, expected.height);
    ASSERT_EQ(frame.luma.pixels.size(), expected.pixels.size());
    EXPECT_LE(difference(frame.luma, expected).greatest, GetParam().tolerance);
    EXPECT_EQ(frame.orientation, 1U);
}

const auto caseName = [](const auto &info) { return info.param.name; };

std::vector<TiffCase> depthsAndColours()
{
    using enum TiffPhotometric;
    return {
        {"grey1", greyPicture(), {.bits = 1}},
        {"grey2", greyPicture(), {.bits = 2}},
        {"grey4", greyPicture(), {.bits = 4}},
        {"grey8", greyPicture(), {.bits = 8}},
        {"grey16", greyPicture(), {.bits = 16}},
        {"grey32", greyPicture(), {.bits = 32}},
        {"greyFloat", greyPicture(), {.bits = 32, .floatingPoint = true}},
        {"invertedGrey1", greyPicture(), {.bits = 1, .photometric = minIsWhite}},
        {"invertedGrey4", greyPicture(), {.bits = 4, .photometric = minIsWhite}},
        {"invertedGrey8", greyPicture(), {.bits = 8, .photometric = minIsWhite}},
        {"invertedGrey16", greyPicture(), {.bits = 16, .photometric = minIsWhite}},
        {"greyAndExtraChannel8", greyPicture(), {.bits = 8, .extraChannels = 1}},
        {"greyAndExtraChannel16", greyPicture(), {.bits = 16, .extraChannels = 1}},
        {"palette1", greyPicture(), {.bits = 1, .photometric = palette}},
        {"palette4", greyPicture(), {.bits = 4, .photometric = palette}},
        {"palette8", greyPicture(), {.bits = 8, .photometric = palette}},
        {"rgb4", colourPicture(), {.bits = 4}},
        {"rgb8", colourPicture(), {.bits = 8}},
        {"grey12", greyPicture(), {.bits = 12}},
        {"rgb10", colourPicture(), {.bits = 10}},
        {"rgb14", colourPicture(), {.bits = 14}},
        {"rgb16", colourPicture(), {.bits = 16}},
        {"rgb32", colourPicture(), {.bits = 32}},
        {"rgbFloat", colourPicture(), {.bits = 32, .floatingPoint = true}},
        {"rgbAndInfrared8", colourPicture(), {.bits = 8, .extraChannels = 1}},
        {"rgbAndInfrared16", colourPicture(), {.bits = 16, .extraChannels = 1}},
        {"rgbAndTwoMore16", colourPicture(), {.bits = 16, .extraChannels = 2}},
        {"inks8", colourPicture(), {.bits = 8, .photometric = cmyk}, 2},
        {"inks16", colourPicture(), {.bits = 16, .photometric = cmyk}},
        {"lab8", greyPicture(), {.bits = 8, .photometric = lab}, 2},
        {"lab16", greyPicture(), {.bits = 16, .photometric = lab}},
        {"yCbCr8", colourPicture(), {.bits = 8, .photometric = yCbCr}},
        {"yCbCr16", colourPicture(), {.bits = 16, .photometric = yCbCr}},
        {"subsampledYCbCr",
         colourPicture(),
         {.photometric = yCbCr, .rowsPerStrip = 16, .chromaSubsampling = 2}},
        {"subsampledYCbCrInTiles",
         colourPicture(),
         {.photometric = yCbCr, .tileWidth = 64, .tileLength = 32, .chromaSubsampling = 2}},
    };
}

INSTANTIATE_TEST_SUITE_P(DepthsAndColours, TiffVariant, ::testing::ValuesIn(depthsAndColours()),
                         caseName);

std::vector<TiffCase> compressions()
{
    using enum TiffCompression;
    using TiffPredictor::floatingPoint;
    using TiffPredictor::horizontal;
    return {
        {"lzw", colourPicture(), {.compression = lzw}},
        {"lzwWithPredictor", colourPicture(), {.compression = lzw, .predictor = horizontal}},
        {"lzwWithPredictor16",
         colourPicture(),
         {.bits = 16, .compression = lzw, .predictor = horizontal}},
        {"deflate", colourPicture(), {.compression = deflate}},
        {"deflateWithPredictor16",
         colourPicture(),
         {.bits = 16, .compression = deflate, .predictor = horizontal}},
        {"deflateWithPredictor32",
         greyPicture(),
         {.bits = 32, .compression = deflate, .predictor = horizontal}},
        {"deflateWithFloatPredictor",
         colourPicture(),
         {.bits = 32, .compression = deflate, .predictor = floatingPoint, .floatingPoint = true}},
        {"packBits", colourPicture(), {.compression = packBits}},
        {"packBits1", greyPicture(), {.bits = 1, .compression = packBits}},
        {"fax4",
         greyPicture(),
         {.bits = 1, .compression = fax4, .photometric = TiffPhotometric::minIsWhite}},
        {"jpegGrey", greyPicture(), {.compression = jpeg}, 40},
        {"jpegRgb", colourPicture(), {.compression = jpeg}, 60},
        {"jpegYCbCr",
         colourPicture(),
         {.compression = jpeg, .photometric = TiffPhotometric::yCbCr},
         60},
        {"jpegYCbCrInTiles",
         colourPicture(),
         {.compression = jpeg,
          .photometric = TiffPhotometric::yCbCr,
          .tileWidth = 64,
          .tileLength = 48},
         60},
    };
}

INSTANTIATE_TEST_SUITE_P(Compressions, TiffVariant, ::testing::ValuesIn(compressions()), caseName);

std::vector<TiffCase> arrangements()
{
    using enum TiffCompression;
    const RasterImage colours = colourPicture();
    return {
        {"oneStrip", colours, {.rowsPerStrip = 0}},
        {"oneStripOfLzw16", colours, {.bits = 16, .compression = lzw, .rowsPerStrip = 0}},
        {"stripsOfOneRow", colours, {.rowsPerStrip = 1}},
        {"tiles", colours, {.tileWidth = 32, .tileLength = 48}},
        {"tilesOf1Bit", greyPicture(), {.bits = 1, .tileWidth = 32, .tileLength = 16}},
        {"tilesOfDeflate16",
         colours,
         {.bits = 16,
          .compression = deflate,
          .predictor = TiffPredictor::horizontal,
          .tileWidth = 64,
          .tileLength = 16}},
        {"oneTileLargerThanTheImage", colours, {.tileWidth = 256, .tileLength = 256}},
        {"planes", colours, {.planarSeparate = true}},
        {"planes16", colours, {.bits = 16, .planarSeparate = true}},
        {"planesOfOneLzwStrip",
         colours,
         {.compression = lzw, .rowsPerStrip = 0, .planarSeparate = true}},
        {"planesAndInfrared", colours, {.bits = 16, .planarSeparate = true, .extraChannels = 1}},
        {"planesOf4Bits", colours, {.bits = 4, .planarSeparate = true}},
        {"planesOfFloats",
         colours,
         {.bits = 32, .compression = deflate, .planarSeparate = true, .floatingPoint = true}},
        {"planesOfInks",
         colours,
         {.photometric = TiffPhotometric::cmyk, .planarSeparate = true},
         2},
        {"planesInTiles",
         colours,
         {.compression = lzw, .tileWidth = 64, .tileLength = 64, .planarSeparate = true}},
        {"bigEndian16", colours, {.bits = 16, .bigEndian = true}},
        {"bigEndian32", colours, {.bits = 32, .bigEndian = true}},
        {"bigEndianFloat", colours, {.bits = 32, .bigEndian = true, .floatingPoint = true}},
        {"bigEndianLzw16", colours, {.bits = 16, .compression = lzw, .bigEndian = true}},
        {"bigEndianTiles16",
         colours,
         {.bits = 16, .tileWidth = 64, .tileLength = 64, .bigEndian = true}},
        {"bigTiff", colours, {.bigTiff = true}},
        {"bigEndianBigTiff16", colours, {.bits = 16, .bigTiff = true, .bigEndian = true}},
        {"reversedBits", greyPicture(), {.bits = 1, .reversedBits = true}},
        {"reversedBits8", colours, {.reversedBits = true}},
        {"reversedBitsOfLzw", colours, {.compression = lzw, .reversedBits = true}},
        {"directoryFirst", colours, {.directoryFirst = true}},
    };
}

INSTANTIATE_TEST_SUITE_P(Arrangements, TiffVariant, ::testing::ValuesIn(arrangements()), caseName);

TEST(FrameDecoder, readsTheFirstPageOnly)
{
    const TempDir folder;
    RasterImage second = greyPicture();
    second.samples.assign(second.samples.size(), 65535);
    writeTiff(folder / "pages.tif", {greyPicture(), second});

    const DecodedFrame frame = decodeFrame(folder / "pages.tif");

    EXPECT_LE(difference(frame.luma, expectedLuma(greyPicture())).greatest, 1);
}

TEST(FrameDecoder, givesEveryOrientationOfATiffAsStored)
{
    const TempDir folder;
    for (int orientation = 1; orientation <= 8; ++orientation) {
        for (const bool big : {false, true}) {
            writeTiff(
                folder / "a.tif", greyPicture(),
                {.bigTiff = big, .bigEndian = orientation % 2 == 0, .orientation = orientation});

            EXPECT_EQ(decodeFrame(folder / "a.tif").orientation,
                      static_cast<std::uint32_t>(orientation));
        }
    }
}

} // namespace
} // namespace quillmark::test
