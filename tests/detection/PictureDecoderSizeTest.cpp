// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ColourPictures.h"
#include "detection/FramePictures.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <random>
#include <utility>
#include <vector>

namespace quillmark {

void PrintTo(const PictureSize &size, std::ostream *out)
{
    *out << size.width << " x " << size.height;
}

namespace test {
namespace {

PictureSize sizeOf(const PictureImage &picture)
{
    EXPECT_EQ(picture.pixels.size(), static_cast<std::size_t>(3 * picture.width * picture.height));
    return {picture.width, picture.height};
}

/// Pixels of one colour, given as shares.
RasterImage even(int width, int height, std::array<double, 3> colour)
{
    RasterImage image{width, height, 3, {}};
    for (int i = 0; i < width * height; ++i) {
        for (const double share : colour) {
            image.samples.push_back(static_cast<std::uint16_t>(share * 65535));
        }
    }
    return image;
}

/// Black and white in turns, one pixel each.
RasterImage checkerboard(int width, int height)
{
    RasterImage image{width, height, 1, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            image.samples.push_back((x + y) % 2 == 0 ? 0 : 65535);
        }
    }
    return image;
}

/// The mean of each channel.
std::array<double, 3> meanColour(const PictureImage &picture)
{
    std::array<double, 3> mean{};
    for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
        mean[i % 3] += picture.pixels[i];
    }
    for (double &channel : mean) {
        channel /= static_cast<double>(picture.pixels.size()) / 3;
    }
    return mean;
}

TEST(PictureDecoder, fitsTheSizeAskedForWithProportionsKept)
{
    const TempDir folder;
    const RasterImage image = even(600, 400, {0.5, 0.25, 0.75});
    writeJpeg(folder / "a", image);
    writeTiff(folder / "b", image);
    for (const char *name : {"a", "b"}) {
        for (const auto &[box, size] :
             std::vector<std::pair<PictureSize, PictureSize>>{{{300, 300}, {300, 200}},
                                                              {{300, 100}, {150, 100}},
                                                              {{299, 10000}, {299, 199}},
                                                              {{600, 400}, {600, 400}},
                                                              {{599, 400}, {599, 399}},
                                                              {{75, 50}, {75, 50}},
                                                              {{74, 50}, {74, 49}},
                                                              {{7, 7}, {7, 5}},
                                                              {{1, 1}, {1, 1}}}) {
            const PictureImage picture = decodePicture(folder / name, box);
            EXPECT_EQ(sizeOf(picture), size) << name;
            const std::array<double, 3> mean = meanColour(picture);
            EXPECT_NEAR(mean[0], 127.5, 2) << name;
            EXPECT_NEAR(mean[1], 63.75, 2) << name;
            EXPECT_NEAR(mean[2], 191.25, 2) << name;
        }
    }
}

TEST(PictureDecoder, neverEnlarges)
{
    const TempDir folder;
    writeJpeg(folder / "a", even(60, 40, {1, 0, 0}));
    writeTiff(folder / "b", even(60, 40, {1, 0, 0}));

    EXPECT_EQ(sizeOf(decodePicture(folder / "a", anySize)), (PictureSize{60, 40}));
    EXPECT_EQ(sizeOf(decodePicture(folder / "b", anySize)), (PictureSize{60, 40}));
}

TEST(PictureDecoder, readsOnePixel)
{
    const TempDir folder;
    writeJpeg(folder / "a", even(1, 1, {1, 1, 1}));
    writeTiff(folder / "b", even(1, 1, {1, 0.5, 0}), {.bits = 16});

    for (const PictureSize &box : {anySize, PictureSize{1, 1}}) {
        EXPECT_GT(decodePicture(folder / "a", box).pixels.at(0), 250);
        EXPECT_EQ(decodePicture(folder / "b", box).pixels,
                  (std::vector<std::uint8_t>{255, 127, 0}));
    }
}

TEST(PictureDecoder, takesExtremeProportions)
{
    const TempDir folder;
    for (const auto &[image, size] : std::vector<std::pair<RasterImage, PictureSize>>{
             {even(20000, 1, {1, 0, 0.5}), {300, 1}},
             {even(1, 20000, {1, 0, 0.5}), {1, 300}},
             {even(20000, 3, {1, 0, 0.5}), {300, 1}},
             {even(3, 20000, {1, 0, 0.5}), {1, 300}}}) {
        writeJpeg(folder / "a", image, {.chromaSubsampling = 1});
        writeTiff(folder / "b", image);
        for (const char *name : {"a", "b"}) {
            const PictureImage picture = decodePicture(folder / name, {300, 300});
            ASSERT_EQ(sizeOf(picture), size) << name;
            EXPECT_NEAR(picture.pixels.front(), 255, 2) << name;
            EXPECT_NEAR(picture.pixels.back(), 127, 2) << name;
        }
    }
}

TEST(PictureDecoder, averagesAFineCheckerboardToGrey)
{
    const TempDir folder;
    const RasterImage image = checkerboard(1200, 900);
    writeJpeg(folder / "a", image, {.quality = 98});
    writeTiff(folder / "b", image);
    writeTiff(folder / "c", image, {.bits = 16, .tileWidth = 112, .tileLength = 80});
    for (const char *name : {"a", "b", "c"}) {
        for (const int width : {600, 400, 317, 300, 150, 149, 101, 13}) {
            const PictureImage picture = decodePicture(folder / name, {width, width});
            const auto [low, high] =
                std::minmax_element(picture.pixels.begin(), picture.pixels.end());
            // An area of an odd number of pixels has one more of black or of white.
            const double pixels = 1200.0 / width * 1200.0 / width;
            EXPECT_LE(*high - *low, 255 / pixels + 6) << name << " " << width;
        }
    }
}

TEST(PictureDecoder, keepsTheMeanColour)
{
    std::mt19937 random(5);
    std::uniform_int_distribution<int> any(0, 65535);
    RasterImage image{487, 331, 3, {}};
    for (int i = 0; i < image.width * image.height; ++i) {
        image.samples.push_back(static_cast<std::uint16_t>(any(random)));
        image.samples.push_back(static_cast<std::uint16_t>(any(random) / 2));
        image.samples.push_back(static_cast<std::uint16_t>(65535 - any(random) / 4));
    }
    const TempDir folder;
    writeTiff(folder / "strips", image);
    writeTiff(folder / "tiles", image, {.tileWidth = 64, .tileLength = 48});
    writeTiff(folder / "oneTile", image, {.tileWidth = 512, .tileLength = 512});
    const std::array<double, 3> whole = meanColour(expectedPicture(image));
    for (const int width : {486, 400, 243, 200, 100, 31, 3}) {
        const PictureImage picture = decodePicture(folder / "strips", {width, width});
        for (std::size_t channel = 0; channel < 3; ++channel) {
            EXPECT_NEAR(meanColour(picture)[channel], whole[channel], 0.7) << width;
        }
        EXPECT_EQ(decodePicture(folder / "tiles", {width, width}).pixels, picture.pixels);
        EXPECT_EQ(decodePicture(folder / "oneTile", {width, width}).pixels, picture.pixels);
    }
}

TEST(PictureDecoder, averagesExactlyTheAreaOfAPixel)
{
    const RasterImage image = colourPicture();
    const TempDir folder;
    writeTiff(folder / "a.tif", image);
    const PictureImage whole = expectedPicture(image);

    const PictureImage picture = decodePicture(folder / "a.tif", {whole.width / 3, 1000});

    ASSERT_EQ(picture.width, 60);
    ASSERT_EQ(picture.height, 41);
    // 181 x 123 pixels: an area is 181/60 wide and exactly 3 high.
    for (const auto &[column, row] : {std::pair{0, 0}, {17, 9}, {30, 20}, {59, 40}}) {
        const double left = column * 181.0 / 60;
        const double right = (column + 1) * 181.0 / 60;
        for (int channel = 0; channel < 3; ++channel) {
            double sum = 0;
            for (int y = row * 3; y < row * 3 + 3; ++y) {
                for (int x = static_cast<int>(left); x < right && x < 181; ++x) {
                    const double share = std::min(right, x + 1.0) - std::max(left, x * 1.0);
                    sum += share * whole.pixel(x, y)[channel];
                }
            }
            EXPECT_NEAR(picture.pixel(column, row)[channel], sum / (right - left) / 3, 1);
        }
    }
}

/// Where a pixel of the upright picture is in the stored one of the given size (Exif 2.32,
/// tag 0x0112: on which sides the stored rows and columns begin).
std::pair<int, int> storedPlace(int orientation, int x, int y, PictureSize stored)
{
    const int right = stored.width - 1;
    const int bottom = stored.height - 1;
    switch (orientation) {
    case 2:
        return {right - x, y};
    case 3:
        return {right - x, bottom - y};
    case 4:
        return {x, bottom - y};
    case 5:
        return {y, x};
    case 6:
        return {y, bottom - x};
    case 7:
        return {right - y, bottom - x};
    case 8:
        return {right - y, x};
    default:
        return {x, y};
    }
}

class PictureOrientation : public ::testing::TestWithParam<int>
{
protected:
    static void expectUpright(const PictureImage &picture, const PictureImage &stored)
    {
        const PictureSize size{stored.width, stored.height};
        for (int y = 0; y < picture.height; ++y) {
            for (int x = 0; x < picture.width; ++x) {
                const auto [column, row] = storedPlace(GetParam(), x, y, size);
                ASSERT_TRUE(std::equal(picture.pixel(x, y), picture.pixel(x, y) + 3,
                                       stored.pixel(column, row)))
                    << x << " " << y;
            }
        }
    }
};

TEST_P(PictureOrientation, isMadeUpright)
{
    const bool swapped = GetParam() >= 5 && GetParam() <= 8;
    const TempDir folder;
    writeJpeg(folder / "stored.jpg", colourPicture());
    writeJpeg(folder / "turned.jpg", colourPicture(), {.orientation = GetParam()});
    writeTiff(folder / "stored.tif", colourPicture());
    writeTiff(folder / "turned.tif", colourPicture(), {.orientation = std::max(GetParam(), 1)});
    for (const std::filesystem::path extension : {".jpg", ".tif"}) {
        std::filesystem::path storedFile = folder / "stored";
        std::filesystem::path turnedFile = folder / "turned";
        storedFile += extension;
        turnedFile += extension;
        for (const PictureSize &box : {anySize, PictureSize{60, 30}}) {
            const PictureSize turnedBox = swapped ? PictureSize{box.height, box.width} : box;
            const PictureImage stored = decodePicture(storedFile, box);
            const PictureImage turned = decodePicture(turnedFile, turnedBox);
            ASSERT_EQ(sizeOf(turned),
                      swapped ? (PictureSize{stored.height, stored.width}) : sizeOf(stored));
            expectUpright(turned, stored);
        }
    }
}

// 0 and 9 have no meaning.
INSTANTIATE_TEST_SUITE_P(PictureDecoder, PictureOrientation, ::testing::Range(0, 9));

} // namespace
} // namespace test
} // namespace quillmark
