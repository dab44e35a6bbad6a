// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"
#include "detection/FramePictures.h"
#include "detection/SlateDetectionError.h"
#include "detection/TiffBytes.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

struct DamageCase {
    std::string name;
    TiffOptions options;
};

void PrintTo(const DamageCase &damage, std::ostream *out)
{
    *out << damage.name;
}

const auto caseName = [](const auto &tested) { return tested.param.name; };

class CutTiff : public ::testing::TestWithParam<DamageCase>
{};

TEST_P(CutTiff, isReadAsFarAsItGoes)
{
    const TempDir folder;
    TiffOptions options = GetParam().options;
    options.directoryFirst = true;
    writeTiff(folder / "whole.tif", colourPicture(), options);
    const std::string bytes = readFile(folder / "whole.tif");
    folder.write("cut.tif", bytes.substr(0, bytes.size() * 6 / 10));

    const LumaImage whole = decodeFrame(folder / "whole.tif").luma;
    const LumaImage cut = decodeFrame(folder / "cut.tif").luma;

    ASSERT_EQ(cut.pixels.size(), whole.pixels.size());
    EXPECT_EQ(difference(cut, whole, 0, 48).greatest, 0);
    EXPECT_TRUE(isMidGrey(cut, 96, cut.height));
}

INSTANTIATE_TEST_SUITE_P(
    FrameDecoder, CutTiff,
    ::testing::Values(
        DamageCase{"plainStrips", {}}, DamageCase{"plainStrip", {.rowsPerStrip = 0}},
        DamageCase{"lzwStrips", {.compression = TiffCompression::lzw}},
        DamageCase{"lzwStrip",
                   {.compression = TiffCompression::lzw,
                    .predictor = TiffPredictor::horizontal,
                    .rowsPerStrip = 0}},
        DamageCase{"deflateStrip16",
                   {.bits = 16,
                    .compression = TiffCompression::deflate,
                    .predictor = TiffPredictor::horizontal,
                    .rowsPerStrip = 0}},
        DamageCase{"packBitsStrip", {.compression = TiffCompression::packBits, .rowsPerStrip = 0}},
        DamageCase{"tiles", {.tileWidth = 32, .tileLength = 16}},
        DamageCase{"bigTiff", {.compression = TiffCompression::lzw, .bigTiff = true}}),
    caseName);

class DamagedTiff : public ::testing::TestWithParam<DamageCase>
{};

TEST_P(DamagedTiff, losesOnlyTheDamagedBlock)
{
    const TempDir folder;
    writeTiff(folder / "whole.tif", colourPicture(), GetParam().options);
    std::string bytes = readFile(folder / "whole.tif");
    const ByteRange block = tiffBlocks(folder / "whole.tif").at(2);
    std::fill_n(bytes.begin() + static_cast<long>(block.offset), block.size, '\xFF');
    folder.write("damaged.tif", bytes);

    const LumaImage whole = decodeFrame(folder / "whole.tif").luma;
    const LumaImage damaged = decodeFrame(folder / "damaged.tif").luma;

    EXPECT_EQ(difference(damaged, whole, 0, 32).greatest, 0);
    EXPECT_TRUE(isMidGrey(damaged, 32, 48));
    EXPECT_EQ(difference(damaged, whole, 48, whole.height).greatest, 0);
}

INSTANTIATE_TEST_SUITE_P(
    FrameDecoder, DamagedTiff,
    ::testing::Values(
        DamageCase{"lzw", {.compression = TiffCompression::lzw}},
        DamageCase{"deflate", {.compression = TiffCompression::deflate}},
        DamageCase{"deflate16", {.bits = 16, .compression = TiffCompression::deflate}},
        DamageCase{"tilesOfWholeRows",
                   {.compression = TiffCompression::deflate, .tileWidth = 192, .tileLength = 16}}),
    caseName);

TEST(FrameDecoder, losesOnlyAStripThatIsNotInTheFile)
{
    const TempDir folder;
    writeTiff(folder / "whole.tif", colourPicture(), {.rowsPerStrip = 16});
    std::string bytes = readFile(folder / "whole.tif");
    TiffBytes(bytes).setElement(stripOffsetsTag, 2, 0x7FFFFFF0);
    folder.write("damaged.tif", bytes);

    const LumaImage whole = decodeFrame(folder / "whole.tif").luma;
    const LumaImage damaged = decodeFrame(folder / "damaged.tif").luma;

    EXPECT_EQ(difference(damaged, whole, 0, 32).greatest, 0);
    EXPECT_TRUE(isMidGrey(damaged, 32, 48));
    EXPECT_EQ(difference(damaged, whole, 48, whole.height).greatest, 0);
}

TEST(FrameDecoder, refusesATiffOfWhichNothingDecodes)
{
    const TempDir folder;
    writeTiff(folder / "whole.tif", colourPicture(), {.directoryFirst = true});
    const std::string bytes = readFile(folder / "whole.tif");
    const std::uint64_t pixels = tiffBlocks(folder / "whole.tif").at(0).offset;
    for (const std::uint64_t length :
         {std::uint64_t{4}, std::uint64_t{8}, std::uint64_t{20}, pixels, pixels + 100}) {
        folder.write("cut.tif", bytes.substr(0, length));
        EXPECT_THROW(decodeFrame(folder / "cut.tif"), SlateDetectionError) << length;
    }
}

TEST(FrameDecoder, readsAJpegInsideATiffAsFarAsItGoes)
{
    const TempDir folder;
    writeTiff(folder / "whole.tif", colourPicture(),
              {.compression = TiffCompression::jpeg, .photometric = TiffPhotometric::yCbCr});
    std::string bytes = readFile(folder / "whole.tif");
    const ByteRange strip = tiffBlocks(folder / "whole.tif").at(2);
    std::fill_n(bytes.begin() + static_cast<long>(strip.offset), strip.size, '\0');
    folder.write("damaged.tif", bytes);

    const LumaImage whole = decodeFrame(folder / "whole.tif").luma;
    const LumaImage damaged = decodeFrame(folder / "damaged.tif").luma;

    EXPECT_EQ(difference(damaged, whole, 0, 32).greatest, 0);
    EXPECT_TRUE(isMidGrey(damaged, 32, 48));
    EXPECT_EQ(difference(damaged, whole, 48, whole.height).greatest, 0);
}

TEST(FrameDecoder, givesAnOrientationOfATiffThatHasNoMeaningAsStored)
{
    const TempDir folder;
    writeTiff(folder / "a.tif", greyPicture(), {.orientation = 1});
    const std::string bytes = readFile(folder / "a.tif");
    struct Case {
        std::uint16_t type;
        std::uint32_t value;
        std::uint32_t expected;
    };
    for (const Case &tested : {Case{3, 9, 9}, Case{3, 0, 0}, Case{3, 65535, 65535}, Case{1, 6, 6},
                               Case{4, 0xFFFFFFFF, 0xFFFFFFFF}, Case{9, 0xFFFFFFFF, 1},
                               Case{2, '6', 1}, Case{11, 0x40C00000, 1}}) {
        std::string changed = bytes;
        TiffBytes(changed).setEntry(orientationTag, tested.type, tested.value);
        folder.write("b.tif", changed);

        EXPECT_EQ(decodeFrame(folder / "b.tif").orientation, tested.expected) << tested.type;
    }
}

} // namespace
} // namespace quillmark::test
