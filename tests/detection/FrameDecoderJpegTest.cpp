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

struct JpegCase {
    std::string name;
    RasterImage image;
    JpegOptions options;
};

void PrintTo(const JpegCase &variant, std::ostream *out)
{
    *out << variant.name;
}

class JpegVariant : public ::testing::TestWithParam<JpegCase>
{};

TEST_P(JpegVariant, decodesToLuma)
{
    const TempDir folder;
    const std::filesystem::path file = folder / "frame.jpg";
    writeJpeg(file, GetParam().image, GetParam().options);

    const DecodedFrame frame = decodeFrame(file);

    const LumaImage expected = expectedLuma(GetParam().image);
    ASSERT_EQ(frame.luma.width, expected.width);
    ASSERT_EQ(frame.luma.height, expected.height);
    ASSERT_EQ(frame.luma.pixels.size(), expected.pixels.size());
    const LumaDifference apart = difference(frame.luma, expected);
    EXPECT_LT(apart.mean, 1.5);
    EXPECT_LT(apart.greatest, 40);
    EXPECT_EQ(frame.orientation, 1U);
}

std::vector<JpegCase> jpegCases()
{
    using enum JpegColour;
    return {
        {"baseline", colourPicture(), {.quality = 97}},
        {"progressive", colourPicture(), {.quality = 97, .progressive = true}},
        {"withoutSubsampling", colourPicture(), {.quality = 97, .chromaSubsampling = 1}},
        {"withRestartMarkers", colourPicture(), {.quality = 97, .restartRows = 1}},
        {"grey", greyPicture(), {.quality = 97}},
        {"progressiveGrey", greyPicture(), {.quality = 97, .progressive = true}},
        {"rgb", colourPicture(), {.quality = 97, .colour = rgb}},
        {"rgbWithoutAdobeMarker",
         colourPicture(),
         {.quality = 97, .colour = rgb, .adobeMarker = false}},
        {"progressiveRgb", colourPicture(), {.quality = 97, .progressive = true, .colour = rgb}},
        {"invertedInks", colourPicture(), {.quality = 97, .colour = cmyk}},
        {"inksWithoutAdobeMarker",
         colourPicture(),
         {.quality = 97, .colour = cmyk, .adobeMarker = false}},
        {"invertedInksAsYcck",
         colourPicture(),
         {.quality = 98, .colour = ycck, .chromaSubsampling = 1}},
    };
}

const auto caseName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(FrameDecoder, JpegVariant, ::testing::ValuesIn(jpegCases()), caseName);

TEST(FrameDecoder, readsAJpegOfOnePixel)
{
    const TempDir folder;
    writeJpeg(folder / "dot.jpg", RasterImage{1, 1, 1, {65535}});

    EXPECT_GT(decodeFrame(folder / "dot.jpg").luma.pixels.at(0), 250);
}

TEST(FrameDecoder, goesByContentAndNotByName)
{
    const TempDir folder;
    writeJpeg(folder / "really-jpeg.tif", greyPicture());
    writeTiff(folder / "really-tiff.jpg", greyPicture());

    EXPECT_LT(
        difference(decodeFrame(folder / "really-jpeg.tif").luma, expectedLuma(greyPicture())).mean,
        3);
    EXPECT_LE(difference(decodeFrame(folder / "really-tiff.jpg").luma, expectedLuma(greyPicture()))
                  .greatest,
              1);
}

TEST(FrameDecoder, givesEveryOrientationOfAJpegAsStored)
{
    const TempDir folder;
    for (int orientation = 0; orientation <= 9; ++orientation) {
        const std::filesystem::path file = folder / (std::to_string(orientation) + ".jpg");
        writeJpeg(file, greyPicture(), {.orientation = orientation});

        EXPECT_EQ(decodeFrame(file).orientation, static_cast<std::uint32_t>(orientation));
    }
}

TEST(FrameDecoder, givesAnOrientationOf32BitsAsStored)
{
    const TempDir folder;
    writeJpeg(folder / "a.jpg", greyPicture(), {.app1 = exifOrientationBlock(0xFFFFFFFF, 4)});

    EXPECT_EQ(decodeFrame(folder / "a.jpg").orientation, 0xFFFFFFFFU);
}

TEST(FrameDecoder, takesAnOrientationThatIsNoNumberAsUpright)
{
    const TempDir folder;
    writeJpeg(folder / "text.jpg", greyPicture(), {.app1 = exifOrientationBlock('6', 2)});
    writeJpeg(folder / "negative.jpg", greyPicture(),
              {.app1 = exifOrientationBlock(0xFFFFFFFF, 9)});
    writeJpeg(folder / "rubbish.jpg", greyPicture(),
              {.app1 = std::string("Exif\0\0II*\0\xFF\xFF\xFF\xFF", 14)});
    writeJpeg(folder / "other.jpg", greyPicture(), {.app1 = "http://ns.adobe.com/xap/1.0/"});

    for (const char *name : {"text.jpg", "negative.jpg", "rubbish.jpg", "other.jpg"}) {
        EXPECT_EQ(decodeFrame(folder / name).orientation, 1U) << name;
    }
}

} // namespace
} // namespace quillmark::test
