// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/Reduce.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <numeric>

namespace quillmark {
namespace {

using testing::Each;
using testing::ElementsAre;

LumaImage imageOf(int width, int height, std::vector<std::uint8_t> pixels)
{
    LumaImage image;
    image.width = width;
    image.height = height;
    image.pixels = std::move(pixels);
    return image;
}

LumaImage flatImage(int width, int height, std::uint8_t level)
{
    return imageOf(width, height,
                   std::vector<std::uint8_t>(
                       static_cast<std::size_t>(width) * static_cast<std::size_t>(height), level));
}

TEST(Reduce, aBoxIsTheMeanOfItsPixels)
{
    const LumaImage image = imageOf(4, 2,
                                    {0, 10, 200, 255, //
                                     20, 30, 255, 255});
    const LumaImage half = reduceByBox(image, 2);
    EXPECT_EQ(half.width, 2);
    EXPECT_EQ(half.height, 1);
    EXPECT_THAT(half.pixels, ElementsAre(15, 241));
}

TEST(Reduce, aLargePictureIsReducedAlikeInBothHalves)
{
    LumaImage large;
    large.width = 3001;
    large.height = 2101;
    large.pixels.resize(std::size_t{3001} * 2101);
    for (std::size_t i = 0; i < large.pixels.size(); ++i) {
        large.pixels[i] = static_cast<std::uint8_t>((i * 2654435761U) >> 13U);
    }
    const LumaImage reduced = reduceByBox(large, 3);
    int wrong = 0;
    for (int y = 0; y < reduced.height; ++y) {
        for (int x = 0; x < reduced.width; ++x) {
            int sum = 0;
            for (int i = 0; i < 9; ++i) {
                sum += large.row(3 * y + i / 3)[3 * x + i % 3];
            }
            wrong += std::abs(reduced.row(y)[x] - sum / 9) > 1 ? 1 : 0;
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST(Reduce, everyFactorKeepsAFlatPictureFlat)
{
    for (int factor = 1; factor <= 16; ++factor) {
        for (const int level : {0, 1, 127, 254, 255}) {
            SCOPED_TRACE(testing::Message() << factor << ", level " << level);
            const LumaImage reduced =
                reduceByBox(flatImage(100, 70, static_cast<std::uint8_t>(level)), factor);
            EXPECT_EQ(reduced.width, 100 / factor);
            EXPECT_EQ(reduced.height, 70 / factor);
            EXPECT_THAT(reduced.pixels, Each(level));
        }
    }
}

TEST(Reduce, whatIsSmallerThanABoxIsGone)
{
    EXPECT_TRUE(reduceByBox(flatImage(2, 50, 9), 3).pixels.empty());
    EXPECT_TRUE(reduceByBox(LumaImage(), 2).pixels.empty());
}

TEST(Reduce, aPartOfAPictureIsReducedFromItsOwnCorner)
{
    const LumaImage image = imageOf(4, 2,
                                    {1, 2, 3, 4, //
                                     5, 6, 7, 8});
    EXPECT_THAT(reduceByBox(LumaView(image).cropped(2, 0, 2, 2), 2).pixels, ElementsAre(6));
}

TEST(Reduce, enlargingPutsOldPixelsAtTheirPlacesAndMeansBetween)
{
    const LumaImage doubled = enlarge(imageOf(2, 1, {0, 100}), 2);
    EXPECT_EQ(doubled.width, 4);
    EXPECT_EQ(doubled.height, 2);
    EXPECT_THAT(doubled.pixels, ElementsAre(0, 25, 75, 100, 0, 25, 75, 100));
}

TEST(Reduce, enlargingKeepsAFlatPictureFlat)
{
    for (const int factor : {2, 3, 4}) {
        EXPECT_THAT(enlarge(flatImage(9, 1, 255), factor).pixels, Each(255)) << factor;
        EXPECT_THAT(enlarge(flatImage(1, 1, 7), factor).pixels, Each(7)) << factor;
    }
}

TEST(LumaView, aCropIsCutOffAtTheEdges)
{
    const LumaImage image = flatImage(10, 8, 0);
    const LumaView corner = LumaView(image).cropped(-3, 5, 6, 100);
    EXPECT_EQ(corner.width, 3);
    EXPECT_EQ(corner.height, 3);
    EXPECT_TRUE(LumaView(image).cropped(20, 20, 5, 5).isEmpty());
}

} // namespace
} // namespace quillmark
