// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SecondOpinion.h"
#include "CodePictures.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::CodePicture;

SymbolCorners cornersOf(const CodePicture &picture)
{
    const double side = picture.code.size;
    return {picture.map(0, 0), picture.map(side, 0), picture.map(side, side), picture.map(0, side)};
}

TEST(SecondOpinion, readsACodeInEitherPolarityAndOfAnySize)
{
    for (const double module : {1.8, 5.0, 16.0}) {
        for (const bool negative : {false, true}) {
            const CodePicture picture = test::codePicture(
                {.version = 5, .pose = {.modulePixels = module, .tilt = 10}, .negative = negative});
            EXPECT_EQ(askForSecondOpinion(picture.luma, cornersOf(picture), module),
                      QStringLiteral("A slate of a roll"))
                << module << ' ' << negative;
        }
    }
}

TEST(SecondOpinion, isNoneWhereNoCodeStands)
{
    const CodePicture picture = test::codePicture({.version = 5});
    const LumaImage plain = test::plainPicture(400, 400, 128);
    EXPECT_FALSE(askForSecondOpinion(plain, cornersOf(picture), 5).has_value());
    EXPECT_FALSE(askForSecondOpinion(LumaView(), cornersOf(picture), 5).has_value());
    const SymbolCorners outside{{{-900, -900}, {-800, -900}, {-800, -800}, {-900, -800}}};
    EXPECT_FALSE(askForSecondOpinion(picture.luma, outside, 5).has_value());
}

} // namespace
} // namespace quillmark
