// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/Homography.h"
#include "support/simulator/Random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace quillmark {
namespace {

/// A card that leans away to the right.
PixelPoint project(PixelPoint p)
{
    const double depth = 0.003 * p.x + 0.001 * p.y + 1;
    return {(6 * p.x + 0.5 * p.y + 300) / depth, (-0.4 * p.x + 5 * p.y + 200) / depth};
}

GridKnot knotAt(double column, double row, double weight = 1)
{
    return {{column, row}, project({column, row}), weight};
}

void expectProjection(const Homography &homography, double tolerance)
{
    for (const PixelPoint place : {PixelPoint{0, 0}, {57, 0}, {57, 57}, {0, 57}, {20, 31}}) {
        const PixelPoint found = homography.map(place);
        const PixelPoint wanted = project(place);
        EXPECT_NEAR(found.x, wanted.x, tolerance);
        EXPECT_NEAR(found.y, wanted.y, tolerance);
    }
}

TEST(Homography, fourKnotsFixItExactly)
{
    const std::vector<GridKnot> knots{knotAt(3.5, 3.5), knotAt(53.5, 3.5), knotAt(3.5, 53.5),
                                      knotAt(50.5, 50.5)};
    const auto homography = Homography::fit(knots);
    ASSERT_TRUE(homography.has_value());
    expectProjection(*homography, 1e-6);
}

TEST(Homography, manyUncertainKnotsAreBalanced)
{
    test::Random random(5);
    std::vector<GridKnot> knots;
    for (int v = 0; v < 8; ++v) {
        for (int u = 0; u < 8; ++u) {
            GridKnot knot = knotAt(8 * u, 8 * v);
            knot.pixel.x += random.between(-1, 1);
            knot.pixel.y += random.between(-1, 1);
            knots.push_back(knot);
        }
    }
    const auto homography = Homography::fit(knots);
    ASSERT_TRUE(homography.has_value());
    expectProjection(*homography, 0.6);
}

TEST(Homography, anOutlierOfLittleWeightMovesItLittle)
{
    std::vector<GridKnot> knots{knotAt(0, 0), knotAt(57, 0), knotAt(0, 57), knotAt(57, 57),
                                knotAt(28, 28, 1e-6)};
    knots.back().pixel.x += 40;
    const auto homography = Homography::fit(knots);
    ASSERT_TRUE(homography.has_value());
    expectProjection(*homography, 0.01);
}

TEST(Homography, knotsThatLeaveItOpenGiveNone)
{
    EXPECT_FALSE(Homography::fit({}).has_value());
    EXPECT_FALSE(
        Homography::fit(std::vector{knotAt(0, 0), knotAt(57, 0), knotAt(0, 57)}).has_value());
    std::vector<GridKnot> line;
    for (int i = 0; i < 10; ++i) {
        line.push_back(knotAt(4 * i, 4 * i));
    }
    EXPECT_FALSE(Homography::fit(line).has_value());
    EXPECT_FALSE(Homography::fit(std::vector<GridKnot>(8, knotAt(7, 7))).has_value());
}

} // namespace
} // namespace quillmark
