// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/CodeTexture.h"
#include "detection/FinderScan.h"
#include "detection/FinderTriangle.h"
#include "support/simulator/PlainCode.h"
#include "support/simulator/SlateFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace quillmark {
namespace {

using test::drawCode;
using test::encodeQr;
using testing::IsEmpty;
using testing::SizeIs;

const QByteArray content = "Finder patterns stand in three corners";

bool hasMarkAt(const std::vector<FinderMark> &marks, double x, double y)
{
    return std::ranges::any_of(marks, [x, y](const FinderMark &mark) {
        return std::hypot(mark.x - x, mark.y - y) < 0.4 * mark.module;
    });
}

TEST(FinderScan, findsTheThreePatternsOfACode)
{
    const test::QrMatrix code = encodeQr(content);
    for (const int module : {2, 3, 5, 7}) {
        SCOPED_TRACE(module);
        const std::vector<FinderMark> marks = scanForFinders(drawCode(code, module), 1);
        const double near = 7.5 * module;
        const double far = (code.size + 0.5) * module;
        EXPECT_TRUE(hasMarkAt(marks, near, near));
        EXPECT_TRUE(hasMarkAt(marks, far, near));
        EXPECT_TRUE(hasMarkAt(marks, near, far));
        for (const FinderMark &mark : marks) {
            EXPECT_TRUE(mark.isDark);
            EXPECT_NEAR(mark.module, module, 0.25 * module);
        }
    }
}

TEST(FinderScan, tellsLightPatternsOnDark)
{
    const LumaImage image = test::negativeOf(drawCode(encodeQr(content), 4));
    const std::vector<FinderMark> marks = scanForFinders(image, 2);
    EXPECT_THAT(marks, SizeIs(testing::Ge(3)));
    for (const FinderMark &mark : marks) {
        EXPECT_FALSE(mark.isDark);
    }
}

TEST(FinderScan, findsNothingInPicturesWithoutPatterns)
{
    LumaImage stripes;
    stripes.width = 200;
    stripes.height = 200;
    for (int i = 0; i < 200 * 200; ++i) {
        stripes.pixels.push_back(i / 5 % 2 == 0 ? 0 : 255);
    }
    EXPECT_THAT(scanForFinders(stripes, 1), IsEmpty());
    EXPECT_THAT(scanForFinders(LumaImage(), 4), IsEmpty());
}

TEST(FinderTriangle, theCornerOfACodeIsBetweenTheOtherTwo)
{
    const test::QrMatrix code = encodeQr(content);
    const LumaImage image = drawCode(code, 4);
    const std::vector<FinderTriangle> triangles = findTriangles(image, scanForFinders(image, 2), 5);
    ASSERT_THAT(triangles, testing::Not(IsEmpty()));
    const FinderTriangle &best = triangles.front();
    EXPECT_NEAR(best.corner.x, 30, 1);
    EXPECT_NEAR(best.corner.y, 30, 1);
    EXPECT_NEAR(best.opposite().x, (code.size + 0.5) * 4, 2);
    EXPECT_NEAR(best.opposite().y, (code.size + 0.5) * 4, 2);
    EXPECT_LT(best.misfit, 0.4);
}

TEST(FinderTriangle, marksOfBothPolaritiesDoNotMix)
{
    std::vector<FinderMark> marks(3);
    for (FinderMark &mark : marks) {
        mark.module = 4;
        mark.hits = 4;
        mark.diagonals = 2;
    }
    marks[1].x = 120;
    marks[2].y = 120;
    EXPECT_THAT(findTriangles(LumaView(), marks, 5), SizeIs(1));
    marks[2].isDark = false;
    EXPECT_THAT(findTriangles(LumaView(), marks, 5), IsEmpty());
}

TEST(FinderTriangle, marksTooCloseForACodeMakeNone)
{
    std::vector<FinderMark> marks(3);
    for (FinderMark &mark : marks) {
        mark.module = 4;
        mark.hits = 4;
        mark.diagonals = 2;
    }
    marks[1].x = 36;
    marks[2].y = 36;
    EXPECT_THAT(findTriangles(LumaView(), marks, 5), IsEmpty());
}

/// The triangle of a code drawn with modules of so many pixels and the usual quiet zone.
FinderTriangle triangleOf(const test::QrMatrix &code, const LumaImage &image, int module)
{
    for (const FinderTriangle &triangle : findTriangles(image, scanForFinders(image, 1), 5)) {
        const double far = (code.size + 0.5) * module;
        if (std::hypot(triangle.opposite().x - far, triangle.opposite().y - far) < module) {
            return triangle;
        }
    }
    throw std::logic_error("no triangle was found");
}

TEST(CodeTexture, aCodeHasItAndAnEmptyPlaceHasNot)
{
    const test::QrMatrix code = encodeQr(content, test::QrLevel::M, 7);
    LumaImage image = drawCode(code, 4);
    const FinderTriangle triangle = triangleOf(code, image, 4);
    EXPECT_TRUE(hasCodeTexture(image, triangle));

    for (int y = 16 + 32; y < image.height - 16 - 32; ++y) {
        std::fill(image.row(y) + 16, image.row(y) + image.width - 16, std::uint8_t{255});
    }
    EXPECT_FALSE(hasCodeTexture(image, triangle));
}

} // namespace
} // namespace quillmark
