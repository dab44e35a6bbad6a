// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameScan.h"

#include "detection/FrameDecoder.h"
#include "detection/FrameLooks.h"
#include "detection/FrameSearch.h"
#include "detection/LumaRows.h"
#include "detection/QrReader.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"
#include "support/simulator/PlainCode.h"
#include "support/simulator/SlateFrame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <thread>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

/// A frame that shows two codes, each at another size and angle, and some grain.
LumaImage frameOfTwoCodes(int width, int height)
{
    test::SimulatedFrame frame;
    frame.width = width;
    frame.height = height;
    frame.seed = 11;
    frame.film.grain = 0.03;
    test::SimulatedCard large;
    large.code = test::encodeQr("the larger one", test::QrLevel::M, 8);
    large.pose = {.centreX = 0.3 * width, .centreY = 0.3 * height, .modulePixels = 9, .tilt = 12};
    test::SimulatedCard small;
    small.code = test::encodeQr("the smaller one", test::QrLevel::M, 10);
    small.pose = {.centreX = 0.75 * width, .centreY = 0.7 * height, .modulePixels = 3, .tilt = -20};
    frame.cards = {large, small};
    return test::renderLuma(frame);
}

test::RasterImage rasterOf(const LumaImage &luma)
{
    test::RasterImage image{luma.width, luma.height, 1};
    image.samples.reserve(luma.pixels.size());
    for (const std::uint8_t pixel : luma.pixels) {
        image.samples.push_back(static_cast<std::uint16_t>(pixel * 257));
    }
    return image;
}

std::vector<std::optional<QString>> readInTurns(const fs::path &file)
{
    const DecodedFrame frame = decodeFrame(file);
    return readQrCodes(frame.luma, frame.orientation);
}

TEST(FrameScan, findsWhatIsFoundOneAfterTheOther)
{
    const TempDir folder;
    const test::RasterImage image = rasterOf(frameOfTwoCodes(1800, 1300));
    test::writeJpeg(folder / "plain.jpg", image);
    test::writeTiff(folder / "plain.tif", {image});
    for (const char *name : {"plain.jpg", "plain.tif"}) {
        const auto expected = readInTurns(folder / name);
        EXPECT_THAT(expected, testing::SizeIs(2)) << name;
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(scanFrame(folder / name), expected) << name;
        }
    }
}

TEST(FrameScan, rowsThatNeverBecomeFinalAreNotSearched)
{
    test::SimulatedFrame frame;
    frame.width = 1200;
    frame.height = 4000;
    test::SimulatedCard card;
    card.code = test::encodeQr("final", test::QrLevel::M, 2);
    card.pose = {.centreX = 600, .centreY = 500, .modulePixels = 27};
    test::SimulatedCard later = card;
    later.code = test::encodeQr("not final", test::QrLevel::M, 2);
    later.pose.centreY = 3500;
    frame.cards = {card, later};
    const LumaImage luma = test::renderLuma(frame);
    ASSERT_THAT(searchFrame(luma).texts(), testing::SizeIs(2));

    LumaRows rows(luma.width, luma.height);
    std::ranges::copy(luma.pixels, rows.rows(0, luma.height));
    rows.advance(3000);
    rows.abandon();
    EXPECT_EQ(searchFrame(rows).texts(),
              std::vector<std::optional<QString>>{QStringLiteral("final")});
}

TEST(FrameScan, aFrameThatIsCutShortIsSearchedAsFarAsItGoes)
{
    const TempDir folder;
    const test::RasterImage image = rasterOf(frameOfTwoCodes(1800, 1300));
    for (const bool progressive : {false, true}) {
        const fs::path whole = folder / "whole.jpg";
        test::writeJpeg(whole, image, {.progressive = progressive});
        std::ifstream in(whole, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        for (const std::size_t share : {1U, 5U, 6U, 9U}) {
            const fs::path part = folder / "part.jpg";
            std::ofstream(part, std::ios::binary) << bytes.substr(0, bytes.size() * share / 10);
            EXPECT_EQ(scanFrame(part), readInTurns(part)) << share << ", " << progressive;
        }
    }
}

TEST(FrameScan, damageBetweenScansLeavesTheScansBefore)
{
    const TempDir folder;
    const fs::path file = folder / "progressive.jpg";
    test::writeJpeg(file, rasterOf(frameOfTwoCodes(1800, 1300)), {.progressive = true});
    std::ifstream in(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    // The length of the last scan's header is none.
    const std::size_t lastScan = bytes.rfind("\xFF\xDA");
    ASSERT_NE(lastScan, std::string::npos);
    bytes.replace(lastScan + 2, 2, "\xFF\xFF");
    std::ofstream(file, std::ios::binary) << bytes;
    const auto expected = readInTurns(file);
    EXPECT_THAT(expected, testing::SizeIs(2));
    EXPECT_EQ(scanFrame(file), expected);
}

TEST(FrameScan, whatIsNoPictureIsRefused)
{
    const TempDir folder;
    const fs::path file = folder / "whole.jpg";
    test::writeJpeg(file, rasterOf(frameOfTwoCodes(1200, 900)));
    std::ifstream in(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    const fs::path header = folder / "header.jpg";
    std::ofstream(header, std::ios::binary) << bytes.substr(0, bytes.find("\xFF\xDA"));
    EXPECT_THROW(scanFrame(header), SlateDetectionError);
    EXPECT_THROW(scanFrame(folder / "missing.jpg"), SlateDetectionError);
}

/// The marks of all looks, in bands of rows that end here.
std::vector<std::vector<FinderMark>> marksInBands(const LumaImage &frame,
                                                  const std::vector<int> &ends)
{
    FrameLooks looks(frame);
    for (const int end : ends) {
        looks.advance(end);
    }
    std::vector<std::vector<FinderMark>> marks;
    for (int i = 0; i < looks.count(); ++i) {
        marks.push_back(looks.marks(i));
    }
    return marks;
}

TEST(FrameLooks, whatIsSeenDoesNotDependOnWhenTheRowsCome)
{
    const LumaImage frame = frameOfTwoCodes(1800, 1300);
    const auto expected = marksInBands(frame, {});
    ASSERT_THAT(expected, testing::SizeIs(5));
    EXPECT_THAT(expected[1], testing::SizeIs(testing::Ge(3)));
    EXPECT_THAT(expected[2], testing::SizeIs(testing::Ge(3)));
    std::vector<int> small;
    for (int end = 1; end < frame.height; end += 13) {
        small.push_back(end);
    }
    for (const std::vector<int> &ends :
         {small, {frame.height}, {700, 701, 1299, 1300}, {5, 1290}}) {
        const auto marks = marksInBands(frame, ends);
        ASSERT_EQ(marks.size(), expected.size());
        for (std::size_t i = 0; i < marks.size(); ++i) {
            ASSERT_EQ(marks[i].size(), expected[i].size());
            for (std::size_t k = 0; k < marks[i].size(); ++k) {
                EXPECT_EQ(marks[i][k].x, expected[i][k].x);
                EXPECT_EQ(marks[i][k].y, expected[i][k].y);
                EXPECT_EQ(marks[i][k].hits, expected[i][k].hits);
            }
        }
    }
}

TEST(FrameLooks, rowsThatAreNotFinalAreNotRead)
{
    const LumaImage frame = frameOfTwoCodes(1500, 1100);
    const auto expected = marksInBands(frame, {});
    // What comes later is something else until it is final.
    LumaImage growing = test::negativeOf(frame);
    FrameLooks looks(growing);
    for (int end = 0; end < frame.height; end += 40) {
        const int next = std::min(end + 40, frame.height);
        std::copy(frame.row(end), frame.row(next - 1) + frame.width, growing.row(end));
        looks.advance(next);
    }
    for (int i = 0; i < looks.count(); ++i) {
        const auto marks = looks.marks(i);
        ASSERT_EQ(marks.size(), expected[static_cast<std::size_t>(i)].size());
        for (std::size_t k = 0; k < marks.size(); ++k) {
            EXPECT_EQ(marks[k].x, expected[static_cast<std::size_t>(i)][k].x);
            EXPECT_EQ(marks[k].hits, expected[static_cast<std::size_t>(i)][k].hits);
        }
    }
}

TEST(FrameLooks, anAbandonedFrameIsLeft)
{
    LumaRows rows(400, 300);
    rows.rows(0, 100);
    FrameLooks looks(rows.view());
    std::jthread decoder([&rows] {
        rows.advance(100);
        rows.abandon();
    });
    EXPECT_FALSE(looks.follow(rows, rows.height()));
}

} // namespace
} // namespace quillmark
