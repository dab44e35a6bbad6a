// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TimingLine.h"
#include "CodePictures.h"
#include "support/simulator/PlainCode.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(TimingLine, runsAlongTheSidesOfACodeAndNotAcrossIt)
{
    for (const test::CardPose &pose : {test::CardPose{.modulePixels = 5},
                                       {.modulePixels = 4, .tilt = 37},
                                       {.modulePixels = 5, .tilt = 100, .mirrored = true}}) {
        const test::CodePicture picture = test::codePicture({.version = 9, .pose = pose});
        const FinderTriangle code = test::triangleOf(picture);
        EXPECT_TRUE(hasTimingLine(picture.luma, code.corner, code.first));
        EXPECT_TRUE(hasTimingLine(picture.luma, code.second, code.corner));
        EXPECT_FALSE(hasTimingLine(picture.luma, code.first, code.second));
    }
}

TEST(TimingLine, isNotThereWhereItsModulesAreOfOneTone)
{
    test::QrMatrix code = test::encodeQr("A", test::QrLevel::M, 5);
    const auto markAt = [](double x, double y) {
        return FinderMark{.x = x, .y = y, .module = 4, .threshold = 128, .contrast = 255};
    };
    const FinderMark from = markAt(4 * 7.5, 4 * 7.5);
    const FinderMark to = markAt(4 * (code.size + 0.5), 4 * 7.5);
    EXPECT_TRUE(hasTimingLine(test::drawCode(code, 4), from, to));
    for (int i = 8; i < code.size - 8; ++i) {
        code.cellAt(i, 6) = 1;
    }
    EXPECT_FALSE(hasTimingLine(test::drawCode(code, 4), from, to));
}

TEST(TimingLine, isNotSeenBeyondThePicture)
{
    const test::CodePicture picture = test::codePicture({});
    const FinderTriangle code = test::triangleOf(picture);
    EXPECT_FALSE(hasTimingLine(LumaView(), code.corner, code.first));
    EXPECT_FALSE(hasTimingLine(test::plainPicture(40, 40, 0), code.corner, code.first));
}

} // namespace
} // namespace quillmark
