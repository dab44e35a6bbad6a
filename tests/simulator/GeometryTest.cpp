// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/ModuleGrid.h"
#include "support/simulator/SlateFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace quillmark::test {
namespace {

/// What moves a card's points about.
struct Placement {
    const char *name;
    std::function<void(SimulatedFrame &, CardPose &)> make;
};

class GeometryTest : public testing::TestWithParam<Placement>
{
protected:
    static SimulatedFrame frameWithCard()
    {
        SimulatedFrame frame;
        frame.width = 900;
        frame.height = 700;
        frame.light.unevenness = 0;
        SimulatedCard card;
        card.code = encodeQr(QByteArray(150, 'g'), QrLevel::M, 10);
        card.pose.centreX = 450;
        card.pose.centreY = 340;
        card.pose.modulePixels = 6;
        frame.cards.push_back(card);
        GetParam().make(frame, frame.cards.front().pose);
        return frame;
    }
};

TEST_P(GeometryTest, everyDrawnModuleIsAtItsRecordedPlace)
{
    const SimulatedFrame frame = frameWithCard();
    const SimulatedCard &card = frame.cards.front();
    const LumaImage luma = renderLuma(frame);
    const ModuleGrid tones = sampleModules(luma, geometryOf(frame, card), card.code.size, 0.0);
    int wrong = 0;
    for (int row = 0; row < card.code.size; ++row) {
        for (int column = 0; column < card.code.size; ++column) {
            const float tone = tones.at(column, row);
            wrong += card.code.isDark(column, row) ? tone > 70 : tone < 180;
        }
    }
    EXPECT_EQ(wrong, 0);
}

TEST_P(GeometryTest, pixelsLeadBackToTheirModules)
{
    const SimulatedFrame frame = frameWithCard();
    const SimulatedCard &card = frame.cards.front();
    const CardGeometry geometry = geometryOf(frame, card);
    const double side = card.code.size;
    for (const Point module : {Point{0, 0}, Point{side, 3}, Point{side / 2, side / 2},
                               Point{4.25, side - 7.5}, Point{-3, side + 3}}) {
        const auto found = geometry.find(geometry.map(module), {side / 2, side / 2});
        ASSERT_TRUE(found.has_value());
        EXPECT_NEAR(found->x, module.x, 1e-3);
        EXPECT_NEAR(found->y, module.y, 1e-3);
    }
}

const std::vector<Placement> placements{
    {"straight", [](SimulatedFrame &, CardPose &) {}},
    {"turned", [](SimulatedFrame &, CardPose &pose) { pose.tilt = 31; }},
    {"mirrored",
     [](SimulatedFrame &, CardPose &pose) {
         pose.mirrored = true;
         pose.tilt = 200;
     }},
    {"leaning",
     [](SimulatedFrame &, CardPose &pose) {
         pose.perspective = 30;
         pose.leanTowards = 130;
     }},
    {"bentTowardsTheCamera",
     [](SimulatedFrame &, CardPose &pose) {
         pose.curl = -55;
         pose.curlTowards = 20;
     }},
    {"bentAway",
     [](SimulatedFrame &, CardPose &pose) {
         pose.curl = 55;
         pose.curlTowards = 100;
     }},
    {"barrel", [](SimulatedFrame &frame, CardPose &) { frame.distortion = -0.08; }},
    {"pincushion",
     [](SimulatedFrame &frame, CardPose &pose) {
         frame.distortion = 0.06;
         pose.centreX = 560;
     }},
    {"allAtOnce",
     [](SimulatedFrame &frame, CardPose &pose) {
         frame.distortion = -0.05;
         pose.tilt = 73;
         pose.mirrored = true;
         pose.perspective = 25;
         pose.leanTowards = 300;
         pose.curl = 40;
         pose.curlTowards = 60;
     }},
};

INSTANTIATE_TEST_SUITE_P(Simulator, GeometryTest, testing::ValuesIn(placements),
                         [](const auto &placement) { return placement.param.name; });

double distance(Point a, Point b)
{
    return std::hypot(a.x - b.x, a.y - b.y);
}

TEST(CardGeometry, aBentCardIsShorterAcrossItsBendOnly)
{
    CardPose pose{500, 500, 5};
    const CardGeometry flat(pose, 61);
    pose.curl = 50;
    pose.curlTowards = 0;
    const CardGeometry bent(pose, 61);
    const auto side = [](const CardGeometry &geometry, Point from, Point to) {
        return distance(geometry.map(from), geometry.map(to));
    };
    EXPECT_LT(side(bent, {0, 30.5}, {61, 30.5}), 0.97 * side(flat, {0, 30.5}, {61, 30.5}));
    EXPECT_NEAR(side(bent, {30.5, 0}, {30.5, 61}), side(flat, {30.5, 0}, {30.5, 61}), 1e-6);
}

TEST(CardGeometry, perspectiveMakesTheFarSideShorter)
{
    CardPose pose{500, 500, 5};
    pose.perspective = 30;
    pose.leanTowards = 0;
    const auto corners = CardGeometry(pose, 61).codeCorners();
    EXPECT_LT(distance(corners[1], corners[2]), 0.9 * distance(corners[0], corners[3]));
}

TEST(CardGeometry, aBarrelDrawsCornersInAndAPincushionOut)
{
    const CardPose pose{500, 400, 5};
    const Point middle{500, 400};
    const auto reach = [&](double strength) {
        const LensDistortion lens{middle, 640, strength};
        return distance(CardGeometry(pose, 61, lens).map({0, 0}), middle);
    };
    EXPECT_LT(reach(-0.1), reach(0) - 1);
    EXPECT_GT(reach(0.1), reach(0) + 1);
    // r (1 + k (r / reach)^2)
    EXPECT_NEAR(reach(0.1), reach(0) * (1 + 0.1 * reach(0) * reach(0) / (640.0 * 640.0)), 1e-6);
}

TEST(CardGeometry, aQuarterTurnIsClockwise)
{
    const CardPose pose{100, 50, 4, 90};
    const auto corners = CardGeometry(pose, 21).codeCorners();
    // The code's top left is at the top right.
    EXPECT_NEAR(corners[0].x, 142, 1e-6);
    EXPECT_NEAR(corners[0].y, 8, 1e-6);
    EXPECT_NEAR(corners[1].x, 142, 1e-6);
    EXPECT_NEAR(corners[1].y, 92, 1e-6);
}

TEST(CardGeometry, whereACardCannotBeSeenIsNoModule)
{
    CardPose pose{500, 500, 5};
    pose.curl = 80;
    pose.curlTowards = 0;
    // Beyond the cylinder's own silhouette.
    EXPECT_FALSE(CardGeometry(pose, 61).find({5000, 500}, {30, 30}).has_value());
}

} // namespace
} // namespace quillmark::test
