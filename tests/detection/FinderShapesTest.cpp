// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderShapes.h"
#include "CodePictures.h"
#include "detection/AlignedTriangle.h"
#include "detection/GridReader.h"
#include "detection/PatternCorrelation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace quillmark {
namespace {

using test::CodePicture;

std::array<PixelPoint, 3> findersOf(const CodePicture &picture)
{
    const double far = picture.code.size - 3.5;
    return {picture.map(3.5, 3.5), picture.map(far, 3.5), picture.map(3.5, far)};
}

std::vector<FittedFinder> shapesOf(const CodePicture &picture, double module)
{
    const PixelArea all{0, 0, picture.luma.width, picture.luma.height};
    return findFinderShapes(picture.luma, all, module / 1.4, module * 1.4);
}

bool isAmong(std::span<const FittedFinder> finders, PixelPoint place, double reach)
{
    return std::ranges::any_of(finders, [&](const FittedFinder &finder) {
        return std::hypot(finder.mark.x - place.x, finder.mark.y - place.y) < reach;
    });
}

/// The text that the first triangle with one has.
QString textOf(const CodePicture &picture, std::span<const FittedFinder> finders)
{
    for (const FinderTriangle &triangle : alignedTriangles(picture.luma, finders, 10)) {
        const auto symbol = readGrid(picture.luma, triangle);
        if (symbol && symbol->text) {
            return *symbol->text;
        }
    }
    return {};
}

TEST(PatternCorrelation, findsThePatternsOfASoftCodeWhicheverWayItIsTurned)
{
    for (const double tilt : {0.0, 20.0, 45.0, 70.0}) {
        const CodePicture picture = test::codePicture(
            {.version = 10, .pose = {.modulePixels = 4, .tilt = tilt}, .blur = 0.6});
        const auto places = findPatternPlaces(picture.luma, 3, 5.5, 8);
        for (const PixelPoint &finder : findersOf(picture)) {
            const auto isThere = [&finder](const PatternPlace &place) {
                return place.correlation > 0 &&
                       std::hypot(place.middle.x - finder.x, place.middle.y - finder.y) < 4;
            };
            EXPECT_TRUE(std::ranges::any_of(places, isThere)) << tilt;
        }
    }
}

TEST(PatternCorrelation, tellsLightPatternsFromDarkOnes)
{
    const CodePicture picture = test::codePicture({.version = 7, .blur = 0.4, .negative = true});
    const auto places = findPatternPlaces(picture.luma, 4, 6, 3);
    const PixelPoint finder = findersOf(picture).front();
    const auto isThere = [&finder](const PatternPlace &place) {
        return place.correlation < 0 &&
               std::hypot(place.middle.x - finder.x, place.middle.y - finder.y) < 5;
    };
    EXPECT_TRUE(std::ranges::any_of(places, isThere));
}

TEST(PatternCorrelation, givesNoMoreThanAskedForOfEachPolarityAndNothingForPlainPictures)
{
    EXPECT_LE(findPatternPlaces(test::noisePicture(300, 300, 4), 2, 5, 7).size(), 14U);
    EXPECT_TRUE(findPatternPlaces(test::plainPicture(300, 300, 90), 2, 5, 7).empty());
    EXPECT_TRUE(findPatternPlaces(test::plainPicture(3, 3, 90), 2, 5, 7).empty());
    EXPECT_TRUE(findPatternPlaces(LumaView(), 2, 5, 7).empty());
}

TEST(FinderShapes, seesThePatternsOfASoftCodeAndHowTheyLie)
{
    for (const double module : {2.5, 4.0, 11.0}) {
        const CodePicture picture = test::codePicture(
            {.version = 8, .pose = {.modulePixels = module, .tilt = 33}, .blur = 0.6});
        const auto finders = shapesOf(picture, module);
        for (const PixelPoint &finder : findersOf(picture)) {
            EXPECT_TRUE(isAmong(finders, finder, module / 2)) << module;
        }
        EXPECT_EQ(textOf(picture, finders), QStringLiteral("A slate of a roll")) << module;
    }
}

TEST(FinderShapes, fitsWhatStandsAtMarksAndNothingElse)
{
    const CodePicture picture =
        test::codePicture({.version = 8, .pose = {.modulePixels = 5, .tilt = 12}});
    std::vector<FinderMark> marks;
    for (const PixelPoint &finder : findersOf(picture)) {
        FinderMark mark;
        mark.x = finder.x + 2;
        mark.y = finder.y - 1;
        mark.module = 5.4;
        marks.push_back(mark);
    }
    FinderMark beside = marks.front();
    beside.x = picture.map(20, 20).x;
    beside.y = picture.map(20, 20).y;
    marks.push_back(beside);
    const auto finders = fitFinderMarks(picture.luma, marks);
    for (const PixelPoint &finder : findersOf(picture)) {
        EXPECT_TRUE(isAmong(finders, finder, 1));
    }
    EXPECT_FALSE(isAmong(finders, {beside.x, beside.y}, 1));
}

TEST(AlignedTriangle, supposesAThirdPatternWhereTwoHaveATimingPatternBetweenThem)
{
    CodePicture picture =
        test::codePicture({.version = 10, .pose = {.modulePixels = 5, .tilt = 15}});
    const PixelPoint spoiled = findersOf(picture)[2];
    for (int y = -19; y <= 19; ++y) {
        for (int x = -19; x <= 19; ++x) {
            picture.luma.row(static_cast<int>(spoiled.y) + y)[static_cast<int>(spoiled.x) + x] =
                255;
        }
    }
    const auto finders = shapesOf(picture, 5);
    EXPECT_FALSE(isAmong(finders, spoiled, 5));
    EXPECT_EQ(textOf(picture, finders), QStringLiteral("A slate of a roll"));
}

TEST(AlignedTriangle, patternsOfDifferentPolarityAreNoTriangle)
{
    const CodePicture picture = test::codePicture({.version = 8});
    auto finders = shapesOf(picture, 5);
    const auto isWhole = [](const FinderTriangle &triangle) {
        return triangle.first.hits > 0 && triangle.second.hits > 0;
    };
    EXPECT_TRUE(std::ranges::any_of(alignedTriangles(picture.luma, finders, 5), isWhole));
    const PixelPoint corner = findersOf(picture).front();
    for (FittedFinder &finder : finders) {
        finder.mark.isDark = std::hypot(finder.mark.x - corner.x, finder.mark.y - corner.y) > 5;
    }
    for (const FinderTriangle &triangle : alignedTriangles(picture.luma, finders, 5)) {
        EXPECT_EQ(triangle.corner.isDark, triangle.first.isDark);
        EXPECT_EQ(triangle.corner.isDark, triangle.second.isDark);
    }
    EXPECT_TRUE(alignedTriangles(picture.luma, {}, 5).empty());
}

} // namespace
} // namespace quillmark
