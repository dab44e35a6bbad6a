// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolPattern.h"
#include "support/simulator/QrMatrix.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using Module = SymbolPattern::Module;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SymbolPattern, alignmentPatternsStandAsInTheTableOfAnnexE)
{
    EXPECT_THAT(alignmentLines(1), IsEmpty());
    EXPECT_THAT(alignmentLines(2), ElementsAre(6, 18));
    EXPECT_THAT(alignmentLines(7), ElementsAre(6, 22, 38));
    EXPECT_THAT(alignmentLines(14), ElementsAre(6, 26, 46, 66));
    EXPECT_THAT(alignmentLines(22), ElementsAre(6, 26, 50, 74, 98));
    EXPECT_THAT(alignmentLines(32), ElementsAre(6, 34, 60, 86, 112, 138));
    EXPECT_THAT(alignmentLines(40), ElementsAre(6, 30, 58, 86, 114, 142, 170));
}

TEST(SymbolPattern, versionsAreToldAsInTheTableOfAnnexD)
{
    EXPECT_EQ(versionBits(7), 0b000111110010010100U);
    EXPECT_EQ(versionBits(21), 0b010101011010000011U);
    EXPECT_EQ(versionBits(40), 0b101000110001101001U);
}

int countOf(const SymbolPattern &pattern, Module module)
{
    int count = 0;
    for (int row = 0; row < pattern.side(); ++row) {
        for (int column = 0; column < pattern.side(); ++column) {
            count += pattern.at(column, row) == module ? 1 : 0;
        }
    }
    return count;
}

TEST(SymbolPattern, leavesTheDataTheModulesOfTable1)
{
    EXPECT_EQ(countOf(SymbolPattern(1), Module::data), 208);
    EXPECT_EQ(countOf(SymbolPattern(2), Module::data), 359);
    EXPECT_EQ(countOf(SymbolPattern(7), Module::data), 1568);
    EXPECT_EQ(countOf(SymbolPattern(14), Module::data), 4651);
    EXPECT_EQ(countOf(SymbolPattern(40), Module::data), 29648);
    EXPECT_EQ(countOf(SymbolPattern(25), Module::format), 30);
}

class SymbolPatternVersionTest : public testing::TestWithParam<int>
{};

TEST_P(SymbolPatternVersionTest, knowsWhatEveryCodeOfTheVersionHas)
{
    const test::QrMatrix code = test::encodeQr("A", test::QrLevel::L, GetParam());
    const SymbolPattern pattern(GetParam());
    ASSERT_EQ(pattern.side(), code.size);
    EXPECT_EQ(pattern.version(), GetParam());
    for (int row = 0; row < code.size; ++row) {
        for (int column = 0; column < code.size; ++column) {
            SCOPED_TRACE(testing::Message() << column << ", " << row);
            const Module module = pattern.at(column, row);
            if (SymbolPattern::isKnown(module)) {
                EXPECT_EQ(module == Module::dark, code.isDark(column, row));
            }
            if (code.isFixed(column, row)) {
                EXPECT_TRUE(SymbolPattern::isKnown(module));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Versions, SymbolPatternVersionTest,
                         testing::Values(1, 2, 6, 7, 14, 22, 32, 40));

} // namespace
} // namespace quillmark
