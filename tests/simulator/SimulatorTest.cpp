// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/SlateFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace quillmark::test {
namespace {

SimulatedFrame frameWithCard()
{
    SimulatedFrame frame;
    frame.width = 600;
    frame.height = 400;
    frame.film.grain = 0.03;
    frame.film.dust = 30;
    frame.film.scratches = 2;
    SimulatedCard card;
    card.code = encodeQr("{}");
    card.pose = {300, 200, 6, 33, 20, 70};
    card.blur = 0.2;
    frame.cards.push_back(card);
    return frame;
}

TEST(Simulator, theSameValuesMakeTheSamePixelsOnAnyNumberOfThreads)
{
    SimulatedFrame frame = frameWithCard();
    frame.workers = 1;
    const LumaImage one = renderLuma(frame);
    frame.workers = 3;
    EXPECT_EQ(one.pixels, renderLuma(frame).pixels);
    frame.seed = 2;
    EXPECT_NE(one.pixels, renderLuma(frame).pixels);
}

TEST(Simulator, colourAndGreyShowTheSameTones)
{
    const SimulatedFrame frame = frameWithCard();
    const LumaImage luma = renderLuma(frame);
    const RasterImage raster = renderRaster(frame);
    ASSERT_EQ(raster.samples.size(), luma.pixels.size() * 3);
    double difference = 0;
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            // ITU-R BT.601 luma.
            const double grey = 0.299 * raster.at(x, y, 0) + 0.587 * raster.at(x, y, 1) +
                                0.114 * raster.at(x, y, 2);
            difference += std::abs(grey / 257.0 - luma.row(y)[x]);
        }
    }
    EXPECT_LT(difference / static_cast<double>(luma.pixels.size()), 2.0);
}

TEST(Simulator, theCornersAreWhereTheCodeIs)
{
    SimulatedFrame frame = frameWithCard();
    frame.film = {};
    frame.cards.front().blur = 0;
    const SimulatedCard &card = frame.cards.front();
    const LumaImage luma = renderLuma(frame);
    const CardGeometry geometry = geometryOf(frame, card);
    // Between the middle and each corner, three and a half modules from both edges, lies the
    // dark middle of a finder pattern; there is none in the fourth corner.
    const double side = card.code.size;
    for (const Point finder : {Point{3.5, 3.5}, Point{side - 3.5, 3.5}, Point{3.5, side - 3.5}}) {
        const Point dark = geometry.map(finder);
        const Point light = geometry.map({finder.x + 2, finder.y});
        EXPECT_LT(luma.row(static_cast<int>(dark.y))[static_cast<int>(dark.x)], 60);
        EXPECT_GT(luma.row(static_cast<int>(light.y))[static_cast<int>(light.x)], 150);
    }
}

TEST(Simulator, aNegativeIsDarkWhereThePositiveIsLight)
{
    SimulatedFrame frame = frameWithCard();
    frame.film = {};
    const LumaImage positive = renderLuma(frame);
    frame.film.negative = true;
    const LumaImage negative = renderLuma(frame);
    for (std::size_t i = 0; i < positive.pixels.size(); ++i) {
        ASSERT_NEAR(positive.pixels[i] + negative.pixels[i], 255, 1);
    }
}

TEST(Simulator, cardsMayLieBeyondTheFrame)
{
    SimulatedFrame frame = frameWithCard();
    for (const double x : {-5000.0, 0.0, 599.0, 5000.0}) {
        frame.cards.front().pose.centreX = x;
        EXPECT_EQ(renderLuma(frame).pixels.size(), 600U * 400U);
    }
}

TEST(Simulator, whatDoesNotFitIntoACodeIsRefused)
{
    EXPECT_THROW(encodeQr(QByteArray(3000, 'x'), QrLevel::H), std::runtime_error);
    EXPECT_THROW(encodeQrSegments({{QrMode::numeric, "12a"}}), std::runtime_error);
}

} // namespace
} // namespace quillmark::test
