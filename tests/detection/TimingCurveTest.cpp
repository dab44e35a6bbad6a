// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TimingCurve.h"
#include "CodePictures.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::CodePicture;

PixelPoint between(PixelPoint from, PixelPoint to)
{
    return {to.x - from.x, to.y - from.y};
}

/// The finder pattern around a module, on the side that runs along the code's first rows.
SideEnd endAt(const CodePicture &picture, double column, double inwardSign = 1)
{
    const PixelPoint middle = picture.map(column, 3.5);
    return {middle, between(middle, picture.map(column + 1, 3.5)),
            between(middle, picture.map(column, 3.5 + inwardSign))};
}

double timingOf(const CodePicture &picture, int modules, double inwardSign = 1)
{
    return timingAlong(picture.luma, endAt(picture, 3.5, inwardSign),
                       endAt(picture, picture.code.size - 3.5, inwardSign), modules);
}

TEST(TimingCurve, alternatesAlongTheTimingPattern)
{
    for (const test::CardPose &pose : {test::CardPose{.modulePixels = 5},
                                       {.modulePixels = 3, .tilt = 37},
                                       {.modulePixels = 9, .tilt = 100, .mirrored = true}}) {
        const CodePicture picture = test::codePicture({.version = 9, .pose = pose});
        EXPECT_GT(timingOf(picture, picture.code.size - 7), 0.85);
    }
}

TEST(TimingCurve, isNegativeOnALightCode)
{
    const CodePicture picture = test::codePicture({.version = 9, .negative = true});
    EXPECT_LT(timingOf(picture, picture.code.size - 7), -0.85);
}

TEST(TimingCurve, tellsTheNumberOfModules)
{
    const CodePicture picture = test::codePicture({.version = 12, .pose = {.modulePixels = 4}});
    const double right = timingOf(picture, picture.code.size - 7);
    EXPECT_LT(timingOf(picture, picture.code.size - 11), right / 2);
    EXPECT_LT(timingOf(picture, picture.code.size - 3), right / 2);
}

TEST(TimingCurve, isNotFoundOnTheOtherSideOfThePatterns)
{
    const CodePicture picture = test::codePicture({.version = 9});
    EXPECT_LT(timingOf(picture, picture.code.size - 7, -1), 0.5);
}

TEST(TimingCurve, followsABentCode)
{
    const CodePicture picture =
        test::codePicture({.version = 14, .pose = {.modulePixels = 5, .curl = 40}});
    EXPECT_GT(timingOf(picture, picture.code.size - 7), 0.6);
}

TEST(TimingCurve, isNothingBeyondThePictureAndForTooFewModules)
{
    const CodePicture picture = test::codePicture({.version = 9});
    const SideEnd from = endAt(picture, 3.5);
    const SideEnd to = endAt(picture, picture.code.size - 3.5);
    EXPECT_EQ(timingAlong(test::plainPicture(20, 20, 128), from, to, 46), 0);
    EXPECT_EQ(timingAlong(picture.luma, from, to, 8), 0);
    EXPECT_EQ(timingAlong(picture.luma, from, to, 2000), 0);
}

} // namespace
} // namespace quillmark
