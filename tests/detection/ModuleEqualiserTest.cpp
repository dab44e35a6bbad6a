// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ModuleEqualiser.h"
#include "CodePictures.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::CodePicture;

class ModuleEqualiserTest : public testing::Test
{
protected:
    /// The shares of wrong modules before equalisation and after four rounds of it.
    static std::pair<double, double> shares(const test::CodePictureOptions &options)
    {
        const CodePicture picture = test::codePicture(options);
        const RegionImage region(picture.luma, test::triangleOf(picture));
        const SymbolGrid grid = test::trueGrid(picture, region);
        const SymbolPattern pattern(options.version);
        const ModuleEqualiser equaliser(region, grid, pattern);
        ModuleLevels levels = plainLevels(region, grid, 4);
        const double before = test::shareWrong(picture.code, levels);
        for (int round = 0; round < 4; ++round) {
            levels = equaliser.equalise(levels);
        }
        return {before, test::shareWrong(picture.code, levels)};
    }
};

TEST_F(ModuleEqualiserTest, aCrispCodeNeedsNone)
{
    const auto [before, after] = shares({.version = 10, .blur = 0.15});
    EXPECT_EQ(before, 0);
    EXPECT_EQ(after, 0);
}

TEST_F(ModuleEqualiserTest, partsModulesThatRanIntoEachOther)
{
    const auto [before, after] = shares({.version = 14, .blur = 0.6});
    EXPECT_GT(before, 0.05);
    EXPECT_LT(after, 0.005);
}

TEST_F(ModuleEqualiserTest, partsThoseOfALightOnDarkCodeToo)
{
    const auto [before, after] = shares({.version = 14, .blur = 0.6, .negative = true});
    EXPECT_GT(before, 0.05);
    EXPECT_LT(after, 0.005);
}

TEST_F(ModuleEqualiserTest, aPlainPictureGivesNumbers)
{
    const CodePicture picture = test::codePicture({.version = 2});
    const LumaImage plain = test::plainPicture(picture.luma.width, picture.luma.height, 77);
    const RegionImage region(plain, test::triangleOf(picture));
    const SymbolPattern pattern(2);
    const SymbolGrid grid = test::trueGrid(picture, region);
    const ModuleEqualiser equaliser(region, grid, pattern);
    for (const float level : equaliser.equalise(plainLevels(region, grid, 4)).levels) {
        EXPECT_TRUE(std::isfinite(level));
    }
}

} // namespace
} // namespace quillmark
