// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/PatternFit.h"
#include "CodePictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace quillmark {
namespace {

constexpr int side = 120;
constexpr double module = 5; // pixels

bool finderIsDark(int ring)
{
    return ring <= 1 || ring == 3;
}

bool alignmentIsDark(int ring)
{
    return ring == 0 || ring == 2;
}

/// Draws squares in squares under a frame, softened over so many modules.
template <typename IsDark>
LumaImage draw(const LocalFrame &frame, double soft, const IsDark &isDark)
{
    LumaImage image = test::plainPicture(side, side, 0);
    const double area = frame.right.x * frame.down.y - frame.right.y * frame.down.x;
    constexpr int samples = 9;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const double right = x + 0.5 - frame.middle.x;
            const double down = y + 0.5 - frame.middle.y;
            const double u = (right * frame.down.y - down * frame.down.x) / area;
            const double v = (down * frame.right.x - right * frame.right.y) / area;
            int dark = 0;
            for (int i = 0; i < samples * samples; ++i) {
                const double across = u + soft * ((i % samples + 0.5) / samples - 0.5);
                const double along = v + soft * ((i / samples + 0.5) / samples - 0.5);
                const double ring = std::max(std::abs(across), std::abs(along));
                dark += isDark(static_cast<int>(std::lround(ring))) ? 1 : 0;
            }
            image.row(y)[x] = static_cast<std::uint8_t>(200 - 140 * dark / (samples * samples));
        }
    }
    return image;
}

RegionImage regionOf(const LumaImage &image)
{
    FinderMark mark;
    mark.x = side / 2.0;
    mark.y = side / 2.0;
    mark.module = module;
    return {image, mark, side};
}

LocalFrame upright()
{
    return {{side / 2.0, side / 2.0}, {module, 0}, {0, module}, 0};
}

struct Lie {
    const char *name;
    double right, down; ///< pixels from the start
    double turn;        ///< degrees
    double stretch;     ///< across
    double soft;        ///< modules

    friend void PrintTo(const Lie &lie, std::ostream *out) { *out << lie.name; }
};

LocalFrame frameOf(const Lie &lie)
{
    const double turn = lie.turn * std::acos(-1.0) / 180;
    return {{side / 2.0 + lie.right, side / 2.0 + lie.down},
            {lie.stretch * module * std::cos(turn), lie.stretch * module * std::sin(turn)},
            {-module * std::sin(turn), module * std::cos(turn)},
            0};
}

class PatternFitTest : public testing::TestWithParam<Lie>
{};

TEST_P(PatternFitTest, findsHowAFinderPatternLies)
{
    const LocalFrame truth = frameOf(GetParam());
    const LumaImage image = draw(truth, GetParam().soft, finderIsDark);
    const auto found = fitFinder(regionOf(image), upright());
    ASSERT_TRUE(found.has_value());
    EXPECT_GT(found->score, 0.9);
    for (const double u : {-3.5, 0.0, 3.5}) {
        for (const double v : {-3.5, 0.0, 3.5}) {
            EXPECT_NEAR(found->at(u, v).x, truth.at(u, v).x, 0.1 * module);
            EXPECT_NEAR(found->at(u, v).y, truth.at(u, v).y, 0.1 * module);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    PatternFit, PatternFitTest,
    testing::Values(Lie{"asItStarts", 0, 0, 0, 1, 0.4}, Lie{"shifted", 3.7, -2.2, 0, 1, 0.4},
                    Lie{"turned", 1, 1, 9, 1, 0.4}, Lie{"stretched", 0, 0, 0, 1.18, 0.4},
                    Lie{"narrowed", 0, 0, 0, 0.85, 0.4}, Lie{"crisp", 1.3, 0.6, 3, 1, 0.05},
                    Lie{"soft", -1.4, 2.1, -4, 1.05, 1.4}),
    [](const auto &lie) { return lie.param.name; });

TEST(PatternFit, looksForAFinderPatternAround)
{
    const LocalFrame truth = frameOf({"", 23, -14, 6, 1.05, 0.6});
    const LumaImage image = draw(truth, 0.6, finderIsDark);
    const auto found = findFinder(regionOf(image), upright(), 6);
    ASSERT_TRUE(found.has_value());
    EXPECT_NEAR(found->middle.x, truth.middle.x, 0.1 * module);
    EXPECT_NEAR(found->middle.y, truth.middle.y, 0.1 * module);
}

TEST(PatternFit, findsAnAlignmentPattern)
{
    for (const double soft : {0.1, 0.6, 1.0}) {
        SCOPED_TRACE(soft);
        const LocalFrame truth = frameOf({"", 4.2, -6.1, 0, 1, soft});
        const LumaImage image = draw(truth, soft, alignmentIsDark);
        const auto found = findAlignment(regionOf(image), upright(), 2);
        ASSERT_TRUE(found.has_value());
        EXPECT_NEAR(found->middle.x, truth.middle.x, 0.1 * module);
        EXPECT_NEAR(found->middle.y, truth.middle.y, 0.1 * module);
    }
}

TEST(PatternFit, findsNothingWhereNoPatternIs)
{
    for (const LumaImage &image :
         {test::plainPicture(side, side, 90), test::noisePicture(side, side, 3)}) {
        EXPECT_FALSE(fitFinder(regionOf(image), upright()).has_value());
        EXPECT_FALSE(findFinder(regionOf(image), upright(), 4).has_value());
        EXPECT_FALSE(findAlignment(regionOf(image), upright(), 2).has_value());
    }
}

TEST(PatternFit, aLightPatternIsNoDarkOne)
{
    LumaImage image = draw(upright(), 0.4, finderIsDark);
    for (std::uint8_t &pixel : image.pixels) {
        pixel = static_cast<std::uint8_t>(255 - pixel);
    }
    EXPECT_FALSE(fitFinder(regionOf(image), upright()).has_value());
}

} // namespace
} // namespace quillmark
