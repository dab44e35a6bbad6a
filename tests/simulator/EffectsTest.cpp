// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Each effect does to the picture what its option says, and no more.

#include "support/simulator/ModuleGrid.h"
#include "support/simulator/SlateFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quillmark::test {
namespace {

SimulatedFrame plainFrame()
{
    SimulatedFrame frame;
    frame.width = 500;
    frame.height = 500;
    frame.light.unevenness = 0;
    SimulatedCard card;
    card.code = encodeQr(QByteArray(40, 'e'), QrLevel::M, 4);
    card.pose.centreX = 250;
    card.pose.centreY = 230;
    card.pose.modulePixels = 9;
    frame.cards.push_back(card);
    return frame;
}

SimulatedCard &cardOf(SimulatedFrame &frame)
{
    return frame.cards.front();
}

ModuleGrid modulesOf(const SimulatedFrame &frame)
{
    const SimulatedCard &card = frame.cards.front();
    return sampleModules(renderLuma(frame), geometryOf(frame, card), card.code.size, 0.7);
}

struct Tones {
    double dark = 0;
    double light = 0;
    double spread() const { return light - dark; }
};

/// The mean of dark modules and of light ones.
Tones tonesOf(const SimulatedFrame &frame)
{
    const ModuleGrid grid = modulesOf(frame);
    const QrMatrix &code = frame.cards.front().code;
    Tones sums;
    int darks = 0;
    for (int row = 0; row < code.size; ++row) {
        for (int column = 0; column < code.size; ++column) {
            (code.isDark(column, row) ? sums.dark : sums.light) += grid.at(column, row);
            darks += code.isDark(column, row) ? 1 : 0;
        }
    }
    return {sums.dark / darks, sums.light / (code.size * code.size - darks)};
}

/// The deviation of the difference of two frames' pixels.
double differenceOf(const LumaImage &one, const LumaImage &other)
{
    double sum = 0;
    double squares = 0;
    for (std::size_t i = 0; i < one.pixels.size(); ++i) {
        const double difference = one.pixels[i] - other.pixels[i];
        sum += difference;
        squares += difference * difference;
    }
    const auto count = static_cast<double>(one.pixels.size());
    return std::sqrt(squares / count - sum * sum / count / count);
}

/// The mean step between neighbours along rows or columns in the code's area.
double stepOf(const LumaImage &luma, int stepX, int stepY)
{
    double sum = 0;
    for (int y = 100; y < 360; ++y) {
        for (int x = 120; x < 380; ++x) {
            sum += std::abs(luma.row(y + stepY)[x + stepX] - luma.row(y)[x]);
        }
    }
    return sum;
}

/// The steepest edge along the rows of the code's area.
int largestStepOf(const LumaImage &luma)
{
    int largest = 0;
    for (int y = 100; y < 360; ++y) {
        for (int x = 120; x < 380; ++x) {
            largest = std::max(largest, std::abs(luma.row(y)[x + 1] - luma.row(y)[x]));
        }
    }
    return largest;
}

/// The mean of the quiet zone above the code.
double quietTone(const SimulatedFrame &frame)
{
    const CardGeometry geometry = geometryOf(frame, frame.cards.front());
    const Point from = geometry.map({-2, -3});
    const Point to = geometry.map({32, -1});
    const LumaImage luma = renderLuma(frame);
    double sum = 0;
    int count = 0;
    for (int y = static_cast<int>(from.y); y < static_cast<int>(to.y); ++y) {
        for (int x = static_cast<int>(from.x); x < static_cast<int>(to.x); ++x) {
            sum += luma.row(y)[x];
            ++count;
        }
    }
    return sum / count;
}

TEST(SimulatorEffects, contrastIsTheDistanceOfTones)
{
    SimulatedFrame frame = plainFrame();
    const Tones full = tonesOf(frame);
    frame.film.contrast = 0.15;
    EXPECT_NEAR(tonesOf(frame).spread(), 0.15 * full.spread(), 2);
}

TEST(SimulatorEffects, exposureMovesWhatIsNotYetWhite)
{
    SimulatedFrame frame = plainFrame();
    const Tones right = tonesOf(frame);
    frame.film.exposure = 0.5;
    EXPECT_NEAR(tonesOf(frame).light, 0.5 * right.light, 2);
    frame.film.exposure = 3;
    EXPECT_NEAR(tonesOf(frame).light, 255, 2);
}

TEST(SimulatorEffects, gammaBendsTonesBetweenBlackAndWhite)
{
    SimulatedFrame frame = plainFrame();
    frame.film.exposure = 0.5;
    const double tone = tonesOf(frame).light / 255;
    for (const double gamma : {0.5, 2.0}) {
        frame.scan.gamma = gamma;
        EXPECT_NEAR(tonesOf(frame).light / 255, std::pow(tone, gamma), 0.01);
    }
}

TEST(SimulatorEffects, aDarkScanKeepsTheRelationOfTones)
{
    SimulatedFrame frame = plainFrame();
    const Tones right = tonesOf(frame);
    frame.scan.gain = 0.25;
    EXPECT_NEAR(tonesOf(frame).light, 0.25 * right.light, 1);
}

TEST(SimulatorEffects, colourGainsShowInEachChannel)
{
    SimulatedFrame frame = plainFrame();
    frame.scan.colours = {1.0, 0.6, 0.3};
    const RasterImage image = renderRaster(frame);
    const SimulatedCard &card = cardOf(frame);
    // In the quiet zone.
    const Point p = geometryOf(frame, card).map({-2, -2});
    const int x = static_cast<int>(p.x);
    const int y = static_cast<int>(p.y);
    const double red = image.at(x, y, 0);
    EXPECT_NEAR(image.at(x, y, 1) / red, 0.6, 0.01);
    EXPECT_NEAR(image.at(x, y, 2) / red, 0.3, 0.01);
}

TEST(SimulatorEffects, grainHasItsDeviationInMidGreyAtAnySize)
{
    SimulatedFrame frame;
    frame.width = 600;
    frame.height = 600;
    frame.film.contrast = 0; // mid-grey everywhere
    const LumaImage clean = renderLuma(frame);
    for (const double clumps : {0.0, 4.0, 9.0}) {
        frame.film.grain = 0.08;
        frame.film.clumps = clumps;
        EXPECT_NEAR(differenceOf(renderLuma(frame), clean) / 255, 0.08, 0.008) << clumps;
    }
}

TEST(SimulatorEffects, largeClumpsStayTogether)
{
    SimulatedFrame frame;
    frame.width = 600;
    frame.height = 600;
    frame.film.contrast = 0;
    frame.film.grain = 0.08;
    const double fine = stepOf(renderLuma(frame), 1, 0);
    frame.film.clumps = 6;
    EXPECT_LT(stepOf(renderLuma(frame), 1, 0), 0.6 * fine);
}

TEST(SimulatorEffects, defocusSoftensBothWaysAlike)
{
    SimulatedFrame frame = plainFrame();
    const LumaImage sharp = renderLuma(frame);
    cardOf(frame).blur = 0.75;
    const LumaImage soft = renderLuma(frame);
    const double across = stepOf(soft, 1, 0) / stepOf(sharp, 1, 0);
    const double down = stepOf(soft, 0, 1) / stepOf(sharp, 0, 1);
    EXPECT_LT(across, 0.6);
    EXPECT_NEAR(across, down, 0.05);
}

TEST(SimulatorEffects, shakeSoftensAlongItsDirectionOnly)
{
    SimulatedFrame frame = plainFrame();
    const LumaImage sharp = renderLuma(frame);
    cardOf(frame).shake = 2;
    cardOf(frame).shakeTowards = 90;
    const LumaImage shaken = renderLuma(frame);
    EXPECT_LT(stepOf(shaken, 0, 1), 0.6 * stepOf(sharp, 0, 1));
    cardOf(frame).shakeTowards = 0;
    const LumaImage along = renderLuma(frame);
    EXPECT_LT(stepOf(along, 1, 0), stepOf(shaken, 1, 0));
    EXPECT_GT(stepOf(along, 0, 1), stepOf(shaken, 0, 1));
}

TEST(SimulatorEffects, halationLightensWhatIsDark)
{
    SimulatedFrame frame = plainFrame();
    const Tones clear = tonesOf(frame);
    cardOf(frame).halation = 0.25;
    const Tones veiled = tonesOf(frame);
    EXPECT_GT(veiled.dark, clear.dark + 15);
    EXPECT_LT(veiled.light, clear.light - 5);
}

TEST(SimulatorEffects, glareDrownsWhereItIsAndNothingElse)
{
    SimulatedFrame frame = plainFrame();
    const LumaImage clear = renderLuma(frame);
    frame.light.glares.push_back({{200, 180}, 60, 40, 1.5});
    const LumaImage dazzled = renderLuma(frame);
    EXPECT_EQ(dazzled.row(180)[200], 255);
    for (int y = 0; y < frame.height; ++y) {
        for (int x = 0; x < frame.width; ++x) {
            if (std::abs(x - 200) > 61 || std::abs(y - 180) > 41) {
                ASSERT_EQ(dazzled.row(y)[x], clear.row(y)[x]) << x << ' ' << y;
            }
        }
    }
}

TEST(SimulatorEffects, lightFallsOffTowardsItsDirection)
{
    SimulatedFrame frame = plainFrame();
    cardOf(frame).pose.modulePixels = 11;
    frame.light.falloff = 0.7;
    frame.light.falloffTowards = 0;
    const LumaImage luma = renderLuma(frame);
    const CardGeometry geometry = geometryOf(frame, cardOf(frame));
    const auto toneAbove = [&](double x) {
        const Point p = geometry.map({x, -2});
        return luma.row(static_cast<int>(p.y))[static_cast<int>(p.x)];
    };
    EXPECT_LT(toneAbove(31), 0.7 * toneAbove(2));
}

TEST(SimulatorEffects, halftoneInkCoversItsShare)
{
    SimulatedFrame frame = plainFrame();
    const Tones solid = tonesOf(frame);
    cardOf(frame).sheet = {Surface::halftone, 0.3, 0.7};
    const Tones dotted = tonesOf(frame);
    EXPECT_GT(dotted.dark, solid.dark + 30);
    EXPECT_LT(dotted.dark, dotted.light - 60);
}

TEST(SimulatorEffects, aDisplayIsAsBrightAsPaperButInStripes)
{
    SimulatedFrame frame = plainFrame();
    frame.film.exposure = 0.4; // no stripe brighter than white
    const double paper = quietTone(frame);
    const double paperSteps = stepOf(renderLuma(frame), 1, 0);
    cardOf(frame).sheet = {Surface::display, 0.5, 0.9};
    EXPECT_NEAR(quietTone(frame), paper, 0.05 * paper);
    EXPECT_GT(stepOf(renderLuma(frame), 1, 0), 1.5 * paperSteps);
}

TEST(SimulatorEffects, sharpeningOvershootsAtEdges)
{
    SimulatedFrame frame = plainFrame();
    frame.film.contrast = 0.5;
    cardOf(frame).blur = 0.1;
    const LumaImage soft = renderLuma(frame);
    frame.scan.sharpening = 1.5;
    const LumaImage sharp = renderLuma(frame);
    EXPECT_GT(largestStepOf(sharp), 1.2 * largestStepOf(soft));
    const auto range = [](const LumaImage &luma) {
        const auto [low, high] = std::ranges::minmax(luma.pixels);
        return high - low;
    };
    EXPECT_GT(range(sharp), range(soft) + 10);
}

TEST(SimulatorEffects, sharpeningIsTheSameInColour)
{
    SimulatedFrame frame = plainFrame();
    frame.film.contrast = 0.5;
    frame.scan.sharpening = 1;
    const LumaImage luma = renderLuma(frame);
    const RasterImage raster = renderRaster(frame);
    // On the card, which has no colour.
    double difference = 0;
    for (int y = 150; y < 310; ++y) {
        for (int x = 170; x < 330; ++x) {
            difference += std::abs(raster.at(x, y, 1) / 257.0 - luma.row(y)[x]);
        }
    }
    EXPECT_LT(difference / (160 * 160), 1.5);
}

} // namespace
} // namespace quillmark::test
