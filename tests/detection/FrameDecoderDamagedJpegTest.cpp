// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"
#include "detection/FramePictures.h"
#include "detection/SlateDetectionError.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace quillmark::test {
namespace {

/// All marker codes of JPEG, ITU-T T.81, table B.1.
constexpr std::string_view huffmanTables = "\xFF\xC4";
constexpr std::string_view startOfScan = "\xFF\xDA";
constexpr std::string_view endOfImage = "\xFF\xD9";

std::string jpegBytes(const RasterImage &image, const JpegOptions &options)
{
    const TempDir folder;
    writeJpeg(folder / "a.jpg", image, options);
    return readFile(folder / "a.jpg");
}

LumaImage decoded(const std::string &bytes)
{
    const TempDir folder;
    return decodeFrame(folder.write("frame", bytes)).luma;
}

bool decodes(const std::string &bytes)
{
    try {
        decoded(bytes);
        return true;
    } catch (const SlateDetectionError &error) {
        EXPECT_EQ(error.which(), SlateDetectionError::Case::imageDecodeFailed);
        return false;
    }
}

TEST(FrameDecoder, readsACutJpegAsFarAsItGoes)
{
    const std::string bytes = jpegBytes(colourPicture(), {});
    const LumaImage whole = decoded(bytes);

    const LumaImage cut = decoded(bytes.substr(0, bytes.size() * 6 / 10));

    ASSERT_EQ(cut.pixels.size(), whole.pixels.size());
    EXPECT_EQ(difference(cut, whole, 0, 32).greatest, 0);
    EXPECT_TRUE(isMidGrey(cut, 96, cut.height));
}

TEST(FrameDecoder, readsACutProgressiveJpegAsFarAsItGoes)
{
    const std::string bytes = jpegBytes(colourPicture(), {.progressive = true});
    const LumaImage whole = decoded(bytes);

    EXPECT_LT(difference(decoded(bytes.substr(0, bytes.size() / 2)), whole).mean, 12);

    const std::size_t firstScan = bytes.find(startOfScan);
    const std::size_t secondScan = bytes.find(startOfScan, firstScan + 2);
    const LumaImage cut = decoded(bytes.substr(0, (firstScan + secondScan) / 2));
    EXPECT_LT(difference(cut, whole, 0, 16).mean, 20);
    EXPECT_TRUE(isMidGrey(cut, 104, cut.height));
}

TEST(FrameDecoder, refusesAJpegThatEndsBeforeItsPicture)
{
    for (const bool progressive : {false, true}) {
        const std::string bytes = jpegBytes(colourPicture(), {.progressive = progressive});
        const std::size_t scan = bytes.find(startOfScan);
        const auto length = static_cast<unsigned char>(bytes[scan + 3]);
        const std::string head = bytes.substr(0, scan + 2 + length);

        EXPECT_FALSE(decodes(bytes.substr(0, 3)));
        EXPECT_FALSE(decodes(bytes.substr(0, scan)));
        EXPECT_FALSE(decodes(head));
        EXPECT_FALSE(decodes(head + std::string(endOfImage)));
        EXPECT_TRUE(decodes(bytes.substr(0, head.size() + 100)));
    }
}

TEST(FrameDecoder, keepsTheScansBeforeDamageInAProgressiveJpeg)
{
    std::string bytes = jpegBytes(colourPicture(), {.progressive = true});
    const LumaImage whole = decoded(bytes);
    const std::size_t tables = bytes.rfind(huffmanTables);
    ASSERT_GT(tables, bytes.find(startOfScan));
    // More codes than a table can have.
    std::fill_n(bytes.begin() + static_cast<long>(tables) + 5, 16, '\xFF');

    EXPECT_LT(difference(decoded(bytes), whole).mean, 6);
}

TEST(FrameDecoder, staysWithinADamagedJpeg)
{
    for (const bool progressive : {false, true}) {
        std::string bytes =
            jpegBytes(colourPicture(), {.progressive = progressive, .restartRows = 1});
        const LumaImage whole = decoded(bytes);
        std::fill_n(bytes.begin() + static_cast<long>(bytes.size()) / 2, 40, '\x55');

        const LumaImage damaged = decoded(bytes);

        ASSERT_EQ(damaged.pixels.size(), whole.pixels.size());
        if (!progressive) {
            EXPECT_EQ(difference(damaged, whole, 0, 32).greatest, 0);
            EXPECT_EQ(difference(damaged, whole, 112, whole.height).greatest, 0);
        }
    }
}

TEST(FrameDecoder, doesNotFollowEndlessScans)
{
    const RasterImage image{2000, 2000, 1, std::vector<std::uint16_t>(4'000'000, 50000)};
    std::string bytes = jpegBytes(image, {.progressive = true});
    const std::size_t last = bytes.rfind(startOfScan);
    const std::string emptyScan = bytes.substr(last, 10);
    bytes.erase(bytes.size() - endOfImage.size());
    for (int i = 0; i < 60000; ++i) {
        bytes += emptyScan;
    }

    const auto begin = std::chrono::steady_clock::now();
    const LumaImage luma = decoded(bytes);

    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_NEAR(luma.pixels.at(0), 195, 1);
}

TEST(FrameDecoder, skipsSegmentsOfAnyNumber)
{
    std::string bytes = jpegBytes(colourPicture(), {.orientation = 3});
    const LumaImage whole = decoded(bytes);
    std::string segments;
    for (int i = 0; i < 300; ++i) {
        segments += std::string("\xFF\xE1\xFF\xFF") + std::string(65533, 'x');
    }
    bytes.insert(2, segments);

    const TempDir folder;
    const DecodedFrame frame = decodeFrame(folder.write("many.jpg", bytes));

    EXPECT_EQ(frame.luma.pixels, whole.pixels);
    EXPECT_EQ(frame.orientation, 3U);
}

TEST(FrameDecoder, takesNoOrientationFromBetweenScans)
{
    std::string bytes = jpegBytes(colourPicture(), {.progressive = true});
    const std::string block = exifOrientationBlock(6);
    ASSERT_LT(block.size(), 250);
    const std::size_t secondScan = bytes.find(startOfScan, bytes.find(startOfScan) + 1);
    ASSERT_NE(secondScan, std::string::npos);
    bytes.insert(secondScan,
                 std::string("\xFF\xE1") + '\0' + static_cast<char>(block.size() + 2) + block);

    const TempDir folder;
    EXPECT_EQ(decodeFrame(folder.write("late.jpg", bytes)).orientation, 1U);
}

TEST(FrameDecoder, decodesInSeveralThreadsAtOnce)
{
    const TempDir folder;
    writeJpeg(folder / "a", colourPicture());
    writeTiff(folder / "b", colourPicture(), {.bits = 16, .compression = TiffCompression::lzw});
    const LumaImage jpeg = decodeFrame(folder / "a").luma;
    const LumaImage tiff = decodeFrame(folder / "b").luma;

    std::vector<LumaImage> results(8);
    {
        std::vector<std::jthread> threads;
        for (std::size_t i = 0; i < results.size(); ++i) {
            threads.emplace_back([&folder, &results, i] {
                results[i] = decodeFrame(folder / (i % 2 == 0 ? "a" : "b")).luma;
            });
        }
    }

    for (std::size_t i = 0; i < results.size(); ++i) {
        EXPECT_EQ(results[i].pixels, i % 2 == 0 ? jpeg.pixels : tiff.pixels);
    }
}

} // namespace
} // namespace quillmark::test
