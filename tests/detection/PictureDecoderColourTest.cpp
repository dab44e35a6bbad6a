// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ColourPictures.h"
#include "detection/FramePictures.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

const auto caseName = [](const auto &tested) { return tested.param.name; };

struct JpegCase {
    std::string name;
    RasterImage image;
    JpegOptions options;
};

void PrintTo(const JpegCase &tested, std::ostream *out)
{
    *out << tested.name;
}

class JpegPicture : public ::testing::TestWithParam<JpegCase>
{};

TEST_P(JpegPicture, hasItsColours)
{
    const TempDir folder;
    writeJpeg(folder / "a.jpg", GetParam().image, GetParam().options);

    const PictureImage picture = decodePicture(folder / "a.jpg", anySize);

    const PictureImage expected = expectedPicture(GetParam().image);
    ASSERT_EQ(picture.width, expected.width);
    ASSERT_EQ(picture.height, expected.height);
    ASSERT_EQ(picture.pixels.size(), expected.pixels.size());
    // Halved chroma is a little off at the edges of the squares.
    EXPECT_LT(difference(picture, expected).mean, GetParam().options.chromaSubsampling > 1 ? 4 : 2);
}

std::vector<JpegCase> jpegCases()
{
    using enum JpegColour;
    return {
        {"baseline", colourPicture(), {.quality = 97}},
        {"progressive", colourPicture(), {.quality = 97, .progressive = true}},
        {"withoutSubsampling", colourPicture(), {.quality = 97, .chromaSubsampling = 1}},
        {"grey", greyPicture(), {.quality = 97}},
        {"progressiveGrey", greyPicture(), {.quality = 97, .progressive = true}},
        {"rgb", colourPicture(), {.quality = 97, .colour = rgb}},
        {"rgbWithoutAdobeMarker",
         colourPicture(),
         {.quality = 97, .colour = rgb, .adobeMarker = false}},
        {"invertedInks", colourPicture(), {.quality = 97, .colour = cmyk}},
        {"progressiveInks", colourPicture(), {.quality = 97, .progressive = true, .colour = cmyk}},
        {"inksWithoutAdobeMarker",
         colourPicture(),
         {.quality = 97, .colour = cmyk, .adobeMarker = false}},
        {"invertedInksAsYcck",
         colourPicture(),
         {.quality = 98, .colour = ycck, .chromaSubsampling = 1}},
    };
}

INSTANTIATE_TEST_SUITE_P(PictureDecoder, JpegPicture, ::testing::ValuesIn(jpegCases()), caseName);

struct TiffCase {
    std::string name;
    RasterImage image;
    TiffOptions options;
    int tolerance = 1; ///< in levels
};

void PrintTo(const TiffCase &tested, std::ostream *out)
{
    *out << tested.name;
}

class TiffPicture : public ::testing::TestWithParam<TiffCase>
{};

TEST_P(TiffPicture, hasItsColours)
{
    const TempDir folder;
    writeTiff(folder / "a.tif", GetParam().image, GetParam().options);

    const PictureImage picture = decodePicture(folder / "a.tif", anySize);

    const PictureImage expected = expectedPicture(GetParam().image);
    ASSERT_EQ(picture.width, expected.width);
    ASSERT_EQ(picture.height, expected.height);
    ASSERT_EQ(picture.pixels.size(), expected.pixels.size());
    EXPECT_LE(difference(picture, expected).greatest, GetParam().tolerance);
}

std::vector<TiffCase> depthsAndColours()
{
    using enum TiffPhotometric;
    const RasterImage grey = greyPicture();
    const RasterImage colours = colourPicture();
    return {
        {"grey1", grey, {.bits = 1}, 128},
        {"grey4", grey, {.bits = 4}, 9},
        {"grey8", grey, {}},
        {"grey16", grey, {.bits = 16}},
        {"grey32", grey, {.bits = 32}},
        {"greyFloat", grey, {.bits = 32, .floatingPoint = true}},
        {"invertedGrey1", grey, {.bits = 1, .photometric = minIsWhite}, 128},
        {"invertedGrey8", grey, {.photometric = minIsWhite}},
        {"invertedGrey16", grey, {.bits = 16, .photometric = minIsWhite}},
        {"greyAndTransparency", grey, {.extraChannels = 1}},
        {"palette4", grey, {.bits = 4, .photometric = palette}, 9},
        {"palette8", grey, {.photometric = palette}},
        {"rgb4", colours, {.bits = 4}, 9},
        {"rgb8", colours, {}},
        {"grey12", grey, {.bits = 12}},
        {"rgb10", colours, {.bits = 10}},
        {"rgb12InPlanes", colours, {.bits = 12, .planarSeparate = true}},
        {"rgb14", colours, {.bits = 14}},
        {"rgb16", colours, {.bits = 16}},
        {"rgb32", colours, {.bits = 32}},
        {"rgbFloat", colours, {.bits = 32, .floatingPoint = true}},
        {"rgbAndInfrared8", colours, {.extraChannels = 1}},
        {"rgbAndInfrared16", colours, {.bits = 16, .extraChannels = 1}},
        {"rgbAndTwoMore16", colours, {.bits = 16, .extraChannels = 2}},
        {"planes", colours, {.planarSeparate = true}},
        {"planesAndInfrared16", colours, {.bits = 16, .planarSeparate = true, .extraChannels = 1}},
        {"tiles", colours, {.tileWidth = 32, .tileLength = 48}},
        {"tilesOf16BitsInPlanes",
         colours,
         {.bits = 16, .tileWidth = 64, .tileLength = 64, .planarSeparate = true}},
        {"oneTileLargerThanTheImage", colours, {.tileWidth = 256, .tileLength = 256}},
        {"lzw16", colours, {.bits = 16, .compression = TiffCompression::lzw, .rowsPerStrip = 0}},
        {"bigEndian16", colours, {.bits = 16, .bigEndian = true}},
        {"inks8", colours, {.photometric = cmyk}, 2},
        {"inksAndOneMore8", colours, {.photometric = cmyk, .extraChannels = 1}, 2},
        {"inks16", colours, {.bits = 16, .photometric = cmyk}},
        {"lab8", colours, {.photometric = lab}, 24},
        {"lab16", colours, {.bits = 16, .photometric = lab}, 2},
        {"iccLab8", colours, {.photometric = iccLab}, 24},
        {"iccLab16", colours, {.bits = 16, .photometric = iccLab}, 2},
        {"lab16InPlanes", colours, {.bits = 16, .photometric = lab, .planarSeparate = true}, 2},
        {"labOfGrey16", grey, {.bits = 16, .photometric = lab}},
        {"yCbCr8", colours, {.photometric = yCbCr}, 3},
        {"yCbCr16", colours, {.bits = 16, .photometric = yCbCr}},
        {"yCbCrInPlanes", colours, {.photometric = yCbCr, .planarSeparate = true}, 3},
        {"subsampledYCbCr",
         colours,
         {.photometric = yCbCr, .rowsPerStrip = 16, .chromaSubsampling = 2},
         8},
        {"subsampledYCbCrInTiles",
         colours,
         {.photometric = yCbCr, .tileWidth = 64, .tileLength = 32, .chromaSubsampling = 2},
         8},
    };
}

INSTANTIATE_TEST_SUITE_P(PictureDecoder, TiffPicture, ::testing::ValuesIn(depthsAndColours()),
                         caseName);

TEST(PictureDecoder, looksColoursUpInAPalette)
{
    const TempDir folder;
    writeTiff(folder / "a.tif", greyPicture(),
              {.photometric = TiffPhotometric::palette, .colouredPalette = true});

    const PictureImage picture = decodePicture(folder / "a.tif", anySize);

    PictureImage expected = expectedPicture(greyPicture());
    for (std::size_t i = 2; i < expected.pixels.size(); i += 3) {
        expected.pixels[i] = static_cast<std::uint8_t>(255 - expected.pixels[i]);
    }
    EXPECT_LE(difference(picture, expected).greatest, 1);
}

TEST(PictureDecoder, isNotMisledByAJpegsColoursInATiff)
{
    const TempDir folder;
    writeTiff(folder / "a.tif", colourPicture(),
              {.compression = TiffCompression::jpeg, .photometric = TiffPhotometric::yCbCr});

    EXPECT_LT(
        difference(decodePicture(folder / "a.tif", anySize), expectedPicture(colourPicture())).mean,
        6);
}

struct LevelsCase {
    std::string name;
    TiffOptions options;
};

void PrintTo(const LevelsCase &tested, std::ostream *out)
{
    *out << tested.name;
}

class DarkPicture : public ::testing::TestWithParam<LevelsCase>
{};

TEST_P(DarkPicture, isStretchedAllColoursAlike)
{
    const TempDir folder;
    writeTiff(folder / "dark.tif", squeezed(colourPicture(), 0.001, 0.02), GetParam().options);

    EXPECT_LE(
        difference(decodePicture(folder / "dark.tif", anySize), expectedPicture(colourPicture()))
            .greatest,
        2);
}

INSTANTIATE_TEST_SUITE_P(
    PictureDecoder, DarkPicture,
    ::testing::Values(LevelsCase{"rgb", {.bits = 16}},
                      LevelsCase{"infrared", {.bits = 16, .extraChannels = 1}},
                      LevelsCase{"planes", {.bits = 16, .planarSeparate = true}},
                      LevelsCase{"lzw", {.bits = 16, .compression = TiffCompression::lzw}},
                      LevelsCase{"tiles", {.bits = 16, .tileWidth = 16, .tileLength = 16}},
                      LevelsCase{"words", {.bits = 32}},
                      LevelsCase{"floats", {.bits = 32, .floatingPoint = true}}),
    caseName);

TEST(PictureDecoder, keepsTheHueOfADarkScanWithATint)
{
    // As the mask of a colour negative: red is four times as light as blue all over.
    RasterImage image{256, 64, 3, {}};
    for (int i = 0; i < image.width * image.height; ++i) {
        const int light = i % image.width * 8;
        image.samples.insert(image.samples.end(), {static_cast<std::uint16_t>(light),
                                                   static_cast<std::uint16_t>(light / 2),
                                                   static_cast<std::uint16_t>(light / 4)});
    }
    const TempDir folder;
    writeTiff(folder / "dark.tif", image, {.bits = 16});

    const PictureImage picture = decodePicture(folder / "dark.tif", anySize);

    for (const int x : {64, 128, 200, 255}) {
        const std::uint8_t *pixel = picture.pixel(x, 30);
        EXPECT_NEAR(pixel[0], x, 2);
        EXPECT_NEAR(pixel[1], x / 2.0, 2);
        EXPECT_NEAR(pixel[2], x / 4.0, 2);
    }
}

TEST(PictureDecoder, leavesADeepScanThatFillsItsRangeAsItIs)
{
    const TempDir folder;
    const RasterImage image = squeezed(colourPicture(), 0.2, 0.85);
    writeTiff(folder / "16.tif", image, {.bits = 16});

    EXPECT_LE(
        difference(decodePicture(folder / "16.tif", anySize), expectedPicture(image)).greatest, 1);
}

} // namespace
} // namespace quillmark::test
