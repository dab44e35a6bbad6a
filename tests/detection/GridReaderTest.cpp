// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/GridReader.h"
#include "CodePictures.h"
#include "detection/FinderCompletion.h"
#include "support/Printers.h"
#include "support/simulator/PlainCode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace quillmark {
namespace {

using test::CodePicture;

TEST(GridReader, readsACodeAndTellsItsCorners)
{
    const CodePicture picture = test::codePicture({.pose = {.modulePixels = 5, .tilt = 20}});
    const auto symbol = readGrid(picture.luma, test::triangleOf(picture));
    ASSERT_TRUE(symbol.has_value());
    EXPECT_EQ(symbol->text, QStringLiteral("A slate of a roll"));
    const double side = picture.code.size;
    const std::array<PixelPoint, 4> corners{picture.map(0, 0), picture.map(side, 0),
                                            picture.map(side, side), picture.map(0, side)};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        EXPECT_NEAR(symbol->corners[i].x, corners[i].x, 2.5);
        EXPECT_NEAR(symbol->corners[i].y, corners[i].y, 2.5);
    }
}

TEST(GridReader, readsASoftCodeMirroredAndLightOnDark)
{
    const CodePicture picture =
        test::codePicture({.pose = {.modulePixels = 5, .tilt = 200, .mirrored = true},
                           .blur = 0.55,
                           .negative = true});
    FinderTriangle triangle = test::triangleOf(picture);
    for (int i = 0; i < 2; ++i) {
        const auto symbol = readGrid(picture.luma, triangle);
        ASSERT_TRUE(symbol.has_value());
        EXPECT_EQ(symbol->text, QStringLiteral("A slate of a roll"));
        std::swap(triangle.first, triangle.second);
    }
}

TEST(GridReader, aCodeThatCannotBeUnderstoodIsSeenAllTheSame)
{
    test::QrMatrix code = test::encodeQr("A", test::QrLevel::L, 7);
    for (int row = 9; row < code.size - 9; ++row) {
        for (int column = 9; column < code.size - 9; ++column) {
            if (!code.isFixed(column, row)) {
                code.cellAt(column, row) = static_cast<std::uint8_t>((column * row / 3) % 2);
            }
        }
    }
    const LumaImage image = test::drawCode(code, 5);
    const auto markAt = [](double x, double y) {
        return FinderMark{.x = x, .y = y, .module = 5, .threshold = 128, .contrast = 255};
    };
    const double near = 5 * 7.5;
    const double far = 5 * (code.size + 0.5);
    const auto symbol =
        readGrid(image, {markAt(near, near), markAt(far, near), markAt(near, far), 5, 0});
    ASSERT_TRUE(symbol.has_value());
    EXPECT_FALSE(symbol->text.has_value());
}

TEST(GridReader, seesNothingWhereNoCodeStands)
{
    const CodePicture picture = test::codePicture({});
    const FinderTriangle triangle = test::triangleOf(picture);
    EXPECT_FALSE(readGrid(test::plainPicture(500, 500, 128), triangle).has_value());
    EXPECT_FALSE(readGrid(test::noisePicture(500, 500, 6), triangle).has_value());
    EXPECT_FALSE(readGrid(test::plainPicture(1, 1, 128), triangle).has_value());
}

TEST(FinderCompletion, findsTheThirdPatternOfTwo)
{
    const CodePicture picture =
        test::codePicture({.pose = {.modulePixels = 5, .tilt = 15, .perspective = 8}});
    const FinderTriangle truth = test::triangleOf(picture);
    const auto isTheCode = [&](const FinderTriangle &found) {
        const auto apart = [](const FinderMark &a, const FinderMark &b) {
            return std::hypot(a.x - b.x, a.y - b.y);
        };
        return apart(found.corner, truth.corner) < 3 &&
               ((apart(found.first, truth.first) < 3 && apart(found.second, truth.second) < 3) ||
                (apart(found.first, truth.second) < 3 && apart(found.second, truth.first) < 3));
    };
    for (const auto &[first, second] : {std::pair{truth.corner, truth.first},
                                        {truth.corner, truth.second},
                                        {truth.second, truth.first}}) {
        EXPECT_THAT(completedTriangles(picture.luma, first, second),
                    testing::Contains(testing::Truly(isTheCode)));
    }
}

TEST(FinderCompletion, findsNoneInNoise)
{
    const FinderTriangle marks = test::triangleOf(test::codePicture({}));
    EXPECT_THAT(completedTriangles(test::noisePicture(500, 500, 7), marks.corner, marks.first),
                testing::IsEmpty());
}

} // namespace
} // namespace quillmark
