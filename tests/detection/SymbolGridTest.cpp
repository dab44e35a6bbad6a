// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolGrid.h"
#include "CodePictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::CodePicture;
using test::CodePictureOptions;
using testing::IsEmpty;
using testing::Not;

/// Whether the first grid found is the code's.
void expectGrid(const CodePictureOptions &options)
{
    SCOPED_TRACE(options.version);
    const CodePicture picture = test::codePicture(options);
    const FinderTriangle triangle = test::triangleOf(picture);
    const RegionImage region(picture.luma, triangle);
    const std::vector<SymbolGrid> grids = findGrids(region, triangle);
    ASSERT_THAT(grids, Not(IsEmpty()));
    EXPECT_EQ(grids.front().version(), options.version);
    EXPECT_EQ(grids.front().side(), picture.code.size);
    EXPECT_LT(test::worstError(picture, region, grids.front()), 0.2);
}

constexpr std::array versions{2, 8, 15, 25};

TEST(SymbolGrid, liesOnACodeSeenStraight)
{
    for (const int version : versions) {
        expectGrid({.version = version});
    }
}

TEST(SymbolGrid, liesOnACodeThatIsTurnedAndLeansAway)
{
    for (const int version : versions) {
        expectGrid({.version = version,
                    .pose = {.modulePixels = 6, .tilt = 33, .perspective = 15, .leanTowards = 60}});
    }
}

TEST(SymbolGrid, liesOnALightOnDarkCode)
{
    for (const int version : versions) {
        expectGrid({.version = version, .negative = true});
    }
}

TEST(SymbolGrid, aMirroredCodeHasAMirroredGrid)
{
    for (const int version : versions) {
        const CodePicture picture = test::codePicture(
            {.version = version, .pose = {.modulePixels = 5, .tilt = 10, .mirrored = true}});
        FinderTriangle triangle = test::triangleOf(picture);
        std::swap(triangle.first, triangle.second);
        const RegionImage region(picture.luma, triangle);
        const std::vector<SymbolGrid> grids = findGrids(region, triangle);
        ASSERT_THAT(grids, Not(IsEmpty()));
        EXPECT_EQ(grids.front().version(), version);
        EXPECT_LT(test::worstError(picture, region, grids.front(), true), 0.2);
    }
}

TEST(SymbolGrid, largeModulesAreSeenOnAReducedCopy)
{
    expectGrid({.version = 2, .pose = {.modulePixels = 21}});
}

TEST(SymbolGrid, thereIsNoneWhereNoCodeStands)
{
    const CodePicture picture = test::codePicture({});
    const FinderTriangle triangle = test::triangleOf(picture);
    for (const LumaImage &other :
         {test::plainPicture(picture.luma.width, picture.luma.height, 180),
          test::noisePicture(picture.luma.width, picture.luma.height, 4), LumaImage()}) {
        EXPECT_THAT(findGrids(RegionImage(other, triangle), triangle), IsEmpty());
    }
}

TEST(SymbolGrid, goesThroughItsKnots)
{
    // A plane, bent by a knot in its middle.
    std::vector<GridKnot> knots;
    for (const auto &[x, y] : {std::pair{0.0, 0.0}, {49.0, 0.0}, {49.0, 49.0}, {0.0, 49.0}}) {
        knots.push_back({{x, y}, {100 + 4 * x, 50 + 4 * y}, 1});
    }
    const SymbolGrid flat = SymbolGrid::through(8, knots).value();
    EXPECT_NEAR(flat.at(24, 24).x, 196, 1e-6);
    EXPECT_NEAR(flat.at(24, 24).y, 146, 1e-6);
    const LocalFrame frame = flat.frameAt(24, 24);
    EXPECT_NEAR(frame.right.x, 4, 1e-6);
    EXPECT_NEAR(frame.down.y, 4, 1e-6);

    knots.push_back({{24, 24}, {199, 146}, 1});
    const SymbolGrid bent = SymbolGrid::through(8, knots).value();
    EXPECT_NEAR(bent.at(24, 24).x, 199, 0.5);
    EXPECT_NEAR(bent.at(24, 24).y, 146, 0.5);
}

} // namespace
} // namespace quillmark
