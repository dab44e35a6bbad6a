// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/CodeLikeness.h"
#include "CodePictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace quillmark {
namespace {

PixelArea allOf(const LumaImage &picture)
{
    return {0, 0, picture.width, picture.height};
}

TEST(CodeLikeness, codesEvenOutHoweverTheyAreTurnedAndSoftened)
{
    for (const double tilt : {0.0, 30.0, 45.0}) {
        for (const double blur : {0.1, 0.5}) {
            const test::CodePicture picture = test::codePicture(
                {.version = 22, .pose = {.modulePixels = 4, .tilt = tilt}, .blur = blur});
            EXPECT_TRUE(evensOut(picture.luma, allOf(picture.luma))) << tilt << ' ' << blur;
        }
    }
}

TEST(CodeLikeness, whatDiffersOverLargePatchesAsOverSmallOnesDoesNot)
{
    // Waves of all lengths, the longer ones stronger.
    LumaImage picture = test::plainPicture(400, 400, 0);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            double level = 128;
            for (int length = 8; length <= 256; length *= 2) {
                const double along = 2 * std::acos(-1.0) / length;
                level += 0.12 * length * std::sin(along * (x + 0.3 * y) + length) *
                         std::cos(along * (y - 0.2 * x));
            }
            picture.row(y)[x] = static_cast<std::uint8_t>(std::clamp(level, 0.0, 255.0));
        }
    }
    EXPECT_FALSE(evensOut(picture, allOf(picture)));
}

TEST(CodeLikeness, plainAndTinyAreasDoNot)
{
    EXPECT_FALSE(evensOut(test::plainPicture(300, 300, 90), {0, 0, 300, 300}));
    EXPECT_FALSE(evensOut(test::noisePicture(300, 300, 1), {0, 0, 20, 20}));
    EXPECT_FALSE(evensOut(test::noisePicture(300, 300, 1), {500, 500, 200, 200}));
}

} // namespace
} // namespace quillmark
