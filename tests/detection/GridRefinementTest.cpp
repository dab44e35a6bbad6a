// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/GridRefinement.h"
#include "CodePictures.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quillmark {
namespace {

using test::CodePicture;

TEST(GridRefinement, straightensABentGrid)
{
    const CodePicture picture = test::codePicture({.version = 12, .blur = 0.4});
    const RegionImage region(picture.luma, test::triangleOf(picture));
    const double side = picture.code.size;
    const SymbolGrid bent = test::gridThrough(picture, region, [side](double column, double row) {
        return PixelPoint{0.6 * std::sin(3 * row / side), 0.6 * std::sin(3 * column / side)};
    });
    EXPECT_GT(test::worstError(picture, region, bent), 0.5);
    SymbolGrid grid = bent;
    for (int i = 0; i < 3; ++i) {
        grid = refineGrid(region, grid, test::levelsOf(picture.code)).value();
    }
    EXPECT_LT(test::worstError(picture, region, grid), 0.25);
}

TEST(GridRefinement, leavesAGridThatLiesRight)
{
    const CodePicture picture = test::codePicture({.version = 12, .blur = 0.4});
    const RegionImage region(picture.luma, test::triangleOf(picture));
    const auto grid =
        refineGrid(region, test::trueGrid(picture, region), test::levelsOf(picture.code));
    ASSERT_TRUE(grid.has_value());
    EXPECT_LT(test::worstError(picture, region, *grid), 0.1);
}

TEST(GridRefinement, tellsNothingWhereTheCodeIsNotSeen)
{
    const CodePicture picture = test::codePicture({.version = 12});
    const LumaImage noise = test::noisePicture(picture.luma.width, picture.luma.height, 9);
    const RegionImage region(noise, test::triangleOf(picture));
    EXPECT_FALSE(refineGrid(region, test::trueGrid(picture, region), test::levelsOf(picture.code))
                     .has_value());
}

} // namespace
} // namespace quillmark
