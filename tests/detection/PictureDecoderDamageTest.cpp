// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ColourPictures.h"
#include "detection/FramePictures.h"
#include "detection/SlateDetectionError.h"
#include "detection/TiffBytes.h"
#include "support/ImageFiles.h"
#include "support/LargeTiff.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>

namespace quillmark::test {
namespace {

/// All marker codes of JPEG, ITU-T T.81, table B.1.
constexpr std::string_view huffmanTables = "\xFF\xC4";
constexpr std::string_view startOfFrame = "\xFF\xC0";
constexpr std::string_view startOfProgressiveFrame = "\xFF\xC2";
constexpr std::string_view startOfScan = "\xFF\xDA";

std::string jpegBytes(const JpegOptions &options)
{
    const TempDir folder;
    writeJpeg(folder / "a.jpg", colourPicture(), options);
    return readFile(folder / "a.jpg");
}

PictureImage decoded(const std::string &bytes, PictureSize largest = anySize)
{
    const TempDir folder;
    return decodePicture(folder.write("picture", bytes), largest);
}

bool isRefused(const std::filesystem::path &file)
{
    try {
        decodePicture(file, {500, 500});
        return false;
    } catch (const SlateDetectionError &error) {
        EXPECT_EQ(error.which(), SlateDetectionError::Case::imageDecodeFailed);
        return true;
    }
}

/// The most memory that the process has held so far.
long peakMegabytes()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(PictureDecoder, showsWhatIsLeftOfACutJpeg)
{
    const std::string bytes = jpegBytes({});
    const std::string cut = bytes.substr(0, bytes.size() * 6 / 10);

    const PictureImage picture = decoded(cut);
    EXPECT_EQ(difference(picture, decoded(bytes), 0, 30).greatest, 0);
    EXPECT_TRUE(isMidGrey(picture, 98, picture.height));

    const PictureImage small = decoded(cut, {60, 60});
    EXPECT_EQ(difference(small, decoded(bytes, {60, 60}), 0, 9).greatest, 0);
    EXPECT_TRUE(isMidGrey(small, 34, small.height));
}

TEST(PictureDecoder, showsTheScansBeforeDamageInAProgressiveJpeg)
{
    std::string bytes = jpegBytes({.progressive = true});
    const PictureImage whole = decoded(bytes);
    const PictureImage small = decoded(bytes, {40, 40});
    // More codes than a table can have.
    std::fill_n(bytes.begin() + static_cast<long>(bytes.rfind(huffmanTables)) + 5, 16, '\xFF');

    EXPECT_LT(difference(decoded(bytes), whole).mean, 10);
    EXPECT_LT(difference(decoded(bytes, {40, 40}), small).mean, 5);
}

TEST(PictureDecoder, showsWhatIsLeftOfACutTiff)
{
    const TempDir folder;
    for (const TiffOptions &options :
         {TiffOptions{.directoryFirst = true},
          {.bits = 16, .rowsPerStrip = 0, .directoryFirst = true},
          {.compression = TiffCompression::lzw, .rowsPerStrip = 0, .directoryFirst = true},
          {.tileWidth = 32, .tileLength = 16, .directoryFirst = true}}) {
        writeTiff(folder / "whole.tif", colourPicture(), options);
        const std::string bytes = readFile(folder / "whole.tif");
        folder.write("cut.tif", bytes.substr(0, bytes.size() * 6 / 10));

        const PictureImage cut = decodePicture(folder / "cut.tif", anySize);

        EXPECT_LE(difference(cut, expectedPicture(colourPicture()), 0, 48).greatest, 1);
        EXPECT_TRUE(isMidGrey(cut, 96, cut.height));
        const PictureImage small = decodePicture(folder / "cut.tif", {60, 60});
        EXPECT_TRUE(isMidGrey(small, 33, small.height));
        EXPECT_FALSE(isMidGrey(small, 0, 16));
    }
}

TEST(PictureDecoder, losesOnlyADamagedStrip)
{
    const TempDir folder;
    writeTiff(folder / "whole.tif", colourPicture(), {.compression = TiffCompression::deflate});
    std::string bytes = readFile(folder / "whole.tif");
    const ByteRange block = tiffBlocks(folder / "whole.tif").at(2);
    std::fill_n(bytes.begin() + static_cast<long>(block.offset), block.size, '\xFF');
    folder.write("damaged.tif", bytes);

    const PictureImage damaged = decodePicture(folder / "damaged.tif", anySize);

    const PictureImage whole = expectedPicture(colourPicture());
    EXPECT_LE(difference(damaged, whole, 0, 32).greatest, 1);
    EXPECT_TRUE(isMidGrey(damaged, 32, 48));
    EXPECT_LE(difference(damaged, whole, 48, whole.height).greatest, 1);
}

TEST(PictureDecoder, showsLightnessWhereChromaIsLost)
{
    const TempDir folder;
    writeTiff(folder / "whole.tif", colourPicture(),
              {.photometric = TiffPhotometric::yCbCr,
               .rowsPerStrip = 0,
               .planarSeparate = true,
               .directoryFirst = true});
    const std::string bytes = readFile(folder / "whole.tif");
    const ByteRange chroma = tiffBlocks(folder / "whole.tif").at(1);
    folder.write("cut.tif", bytes.substr(0, chroma.offset));

    const PictureImage cut = decodePicture(folder / "cut.tif", anySize);

    const LumaImage expected = expectedLuma(colourPicture());
    for (std::size_t i = 0; i < cut.pixels.size(); ++i) {
        ASSERT_NEAR(cut.pixels[i], expected.pixels[i / 3], 1);
    }
}

TEST(PictureDecoder, refusesWhatIsNoPicture)
{
    const TempDir folder;
    EXPECT_TRUE(isRefused(folder.write("text.jpg", "This is not a picture.\n")));
    EXPECT_TRUE(isRefused(folder.write("empty.jpg", "")));
    EXPECT_TRUE(isRefused(folder.write("torn.jpg", "\xFF\xD8\xFF")));
    EXPECT_TRUE(isRefused(folder.write("torn.tif", std::string("II*\0", 4))));
    EXPECT_TRUE(isRefused(folder / "absent.jpg"));
    EXPECT_TRUE(isRefused(folder.path()));
    const std::string bytes = jpegBytes({});
    EXPECT_TRUE(isRefused(folder.write("head.jpg", bytes.substr(0, bytes.find(startOfScan)))));
}

TEST(PictureDecoder, refusesAJpegOf12Bits)
{
    std::string bytes = jpegBytes({});
    bytes.at(bytes.find(startOfFrame) + 4) = 12;
    const TempDir folder;

    EXPECT_TRUE(isRefused(folder.write("deep.jpg", bytes)));
}

TEST(PictureDecoder, refusesHugePicturesAtNoCost)
{
    const TempDir folder;
    const long before = peakMegabytes();
    for (const bool progressive : {false, true}) {
        std::string bytes = jpegBytes({.progressive = progressive});
        const std::size_t header = bytes.find(progressive ? startOfProgressiveFrame : startOfFrame);
        bytes.replace(header + 5, 4, "\xFF\x00\xFF\x00", 4); // ITU-T T.81, B.2.2
        EXPECT_TRUE(isRefused(folder.write("huge.jpg", bytes)));
    }
    for (const auto &[width, height] : {std::pair{40000U, 30000U}, {0xFFFFFFFFU, 1U}}) {
        writeTiff(folder / "small.tif", colourPicture(), {.compression = TiffCompression::lzw});
        std::string bytes = readFile(folder / "small.tif");
        TiffBytes tiff(bytes);
        tiff.setEntry(widthTag, 4, width);
        tiff.setEntry(lengthTag, 4, height);
        EXPECT_TRUE(isRefused(folder.write("huge.tif", bytes)));
    }
    EXPECT_LT(peakMegabytes() - before, 50);
}

TEST(PictureDecoder, givesUpWhenAskedToStop)
{
    const TempDir folder;
    writeJpeg(folder / "a", colourPicture());
    writeTiff(folder / "b", colourPicture());
    std::stop_source stop;
    for (const char *name : {"a", "b"}) {
        EXPECT_EQ(decodePicture(folder / name, anySize, stop.get_token()).width, 181);
    }
    stop.request_stop();
    for (const char *name : {"a", "b"}) {
        EXPECT_THROW(decodePicture(folder / name, anySize, stop.get_token()), SlateDetectionError);
    }
}

TEST(PictureDecoder, endsSoonAfterAStop)
{
    const TempDir folder;
    writeLargeTiff(folder / "large.tif", 30000, 20000); // seconds, all in all
    std::stop_source stop;
    const auto begin = std::chrono::steady_clock::now();
    auto ended = begin;
    {
        const std::jthread reading([&] {
            EXPECT_THROW(decodePicture(folder / "large.tif", {1000, 1000}, stop.get_token()),
                         SlateDetectionError);
            ended = std::chrono::steady_clock::now();
        });
        stop.request_stop();
    }
    EXPECT_LT(ended - begin, std::chrono::milliseconds(500));
}

TEST(PictureDecoder, holdsALargeScanInLittleMemory)
{
    const TempDir folder;
    writeLargeTiff(folder / "large.tif", 12000, 8400); // 100 megapixels, 605 MB
    const long before = peakMegabytes();

    const PictureImage picture = decodePicture(folder / "large.tif", {1000, 1000});

    EXPECT_EQ(picture.width, 1000);
    EXPECT_EQ(picture.height, 700);
    EXPECT_LT(peakMegabytes() - before, 40);
}

} // namespace
} // namespace quillmark::test
