// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffLzw.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <tiffio.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct TiffCloser {
    void operator()(TIFF *tiff) const { TIFFClose(tiff); }
};

/// A file whose only strip holds the bytes, packed by libtiff.
void writeStrip(const std::filesystem::path &file, Bytes bytes)
{
    const std::unique_ptr<TIFF, TiffCloser> tiff(TIFFOpen(file.c_str(), "w"));
    if (!tiff) {
        throw std::runtime_error("cannot write");
    }
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, 1000);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(bytes.size() / 1000));
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(bytes.size() / 1000));
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, COMPRESSION_LZW);
    if (TIFFWriteEncodedStrip(tiff.get(), 0, bytes.data(), static_cast<tmsize_t>(bytes.size())) <
        0) {
        throw std::runtime_error("cannot write");
    }
}

/// Bytes of `values` different ones, the same again for `run` of them on average.
Bytes someBytes(std::size_t count, unsigned values, unsigned run)
{
    std::minstd_rand random(3);
    Bytes bytes;
    while (bytes.size() < count) {
        const auto value = static_cast<std::uint8_t>((random() >> 8U) % values);
        const std::size_t length = 1 + (random() >> 8U) % (2 * run - 1);
        bytes.insert(bytes.end(), std::min(length, count - bytes.size()), value);
    }
    return bytes;
}

struct LzwCase {
    std::string name;
    Bytes bytes;
};

void PrintTo(const LzwCase &tested, std::ostream *out)
{
    *out << tested.name;
}

class TiffLzwOf : public ::testing::TestWithParam<LzwCase>
{
protected:
    TiffLzwOf()
    {
        writeStrip(m_folder / "strip.tif", GetParam().bytes);
        const ByteRange strip = tiffBlocks(m_folder / "strip.tif").at(0);
        m_packed = {strip.offset, strip.size};
        m_file = FrameFile::open(m_folder / "strip.tif");
    }

    /// The rows that come before there is no more, each as it should be.
    std::size_t goodRows(const TiffSpan &packed, std::size_t rowBytes)
    {
        const Bytes &bytes = GetParam().bytes;
        m_lzw->begin(*m_file, packed);
        for (std::size_t rows = 0;; ++rows) {
            const std::span<const std::uint8_t> row = m_lzw->next(rowBytes);
            if (row.empty()) {
                return rows;
            }
            const std::size_t at = rows * rowBytes;
            if (at + rowBytes > bytes.size() || !std::equal(row.begin(), row.end(), &bytes[at])) {
                ADD_FAILURE() << "row " << rows;
                return rows;
            }
        }
    }

    TempDir m_folder;
    TiffSpan m_packed;
    std::optional<FrameFile> m_file;
    // Large for a stack.
    std::unique_ptr<TiffLzw> m_lzw = std::make_unique<TiffLzw>();
};

TEST_P(TiffLzwOf, givesAllBytesInOneGo)
{
    const Bytes &bytes = GetParam().bytes;
    for (int times = 0; times < 2; ++times) {
        const std::span<std::uint8_t> got = m_lzw->unpack(*m_file, m_packed, bytes.size());
        EXPECT_TRUE(Bytes(got.begin(), got.end()) == bytes);
    }
}

TEST_P(TiffLzwOf, givesTheFirstBytesInOneGo)
{
    const Bytes &bytes = GetParam().bytes;
    for (const std::size_t size : {std::size_t{1}, bytes.size() / 2, bytes.size() - 1}) {
        const std::span<std::uint8_t> got = m_lzw->unpack(*m_file, m_packed, size);
        ASSERT_EQ(got.size(), size);
        EXPECT_TRUE(std::equal(got.begin(), got.end(), bytes.begin()));
    }
}

TEST_P(TiffLzwOf, givesNothingWhereBytesAreMissing)
{
    const std::size_t size = GetParam().bytes.size();
    EXPECT_TRUE(m_lzw->unpack(*m_file, m_packed, size + 1).empty());
    EXPECT_TRUE(m_lzw->unpack(*m_file, {m_packed.offset, m_packed.count / 2}, size).empty());
    EXPECT_TRUE(m_lzw->unpack(*m_file, {m_packed.offset, 0}, size).empty());
    EXPECT_TRUE(m_lzw->unpack(*m_file, {m_packed.offset + (1U << 30U), 9}, size).empty());
}

TEST_P(TiffLzwOf, givesRowAfterRow)
{
    const std::size_t size = GetParam().bytes.size();
    for (const std::size_t rowBytes : {std::size_t{125}, std::size_t{1000}, size}) {
        if (rowBytes <= 1'000'000) {
            EXPECT_EQ(goodRows(m_packed, rowBytes), size / rowBytes);
        }
    }
}

TEST_P(TiffLzwOf, givesRowsUpToWhereTheBytesEnd)
{
    const std::size_t rows = goodRows({m_packed.offset, m_packed.count / 2}, 1000);
    EXPECT_GT(rows, 0U);
    EXPECT_LT(rows, GetParam().bytes.size() / 1000);
    EXPECT_TRUE(m_lzw->next(1000).empty());
}

INSTANTIATE_TEST_SUITE_P(Bytes, TiffLzwOf,
                         ::testing::Values(LzwCase{"noise", someBytes(300'000, 256, 1)},
                                           LzwCase{"fewValues", someBytes(2'000'000, 5, 1)},
                                           LzwCase{"runs", someBytes(4'000'000, 200, 40)},
                                           // Each string is the one before and one byte more.
                                           LzwCase{"oneValue", Bytes(20'000'000, 7)}),
                         [](const auto &tested) { return tested.param.name; });

TEST(TiffLzw, readsOnlyWhatBeginsWithAClearing)
{
    const TempDir folder;
    // Nine bits each: what stands for the single byte 1, and so on.
    const auto file = FrameFile::open(folder.write("file", std::string(100, '\x00')));
    const auto lzw = std::make_unique<TiffLzw>();
    EXPECT_TRUE(lzw->unpack(*file, {0, 100}, 20).empty());
    lzw->begin(*file, {0, 100});
    EXPECT_TRUE(lzw->next(20).empty());
}

TEST(TiffLzw, refusesACodeThatStandsForNothingYet)
{
    const TempDir folder;
    // 256 (clear), 65, 300: bits 100000000 001000001 100101100.
    const std::string bytes("\x80\x10\x65\x80", 4);
    const auto file = FrameFile::open(folder.write("file", bytes));
    const auto lzw = std::make_unique<TiffLzw>();
    EXPECT_EQ(lzw->unpack(*file, {0, 4}, 1).size(), 1U);
    EXPECT_TRUE(lzw->unpack(*file, {0, 4}, 2).empty());
}

TEST(TiffLzw, unpacksACodeThatIsMadeByItself)
{
    const TempDir folder;
    // 256 (clear), 65, 258, 257 (end): bits 100000000 001000001 100000010 100000001.
    const std::string bytes("\x80\x10\x60\x50\x10", 5);
    const auto file = FrameFile::open(folder.write("file", bytes));
    const auto lzw = std::make_unique<TiffLzw>();
    const std::span<std::uint8_t> got = lzw->unpack(*file, {0, 5}, 3);
    EXPECT_EQ(std::string(got.begin(), got.end()), "AAA");
    EXPECT_TRUE(lzw->unpack(*file, {0, 5}, 4).empty());
}

TEST(TiffLzw, nothingComesBehindTheEndOfAStrip)
{
    const TempDir folder;
    // 256 (clear), 65, 257 (end), 66, 67:
    // bits 100000000 001000001 100000001 001000010 001000011.
    const std::string bytes("\x80\x10\x60\x24\x22\x18", 6);
    const auto file = FrameFile::open(folder.write("file", bytes));
    const auto lzw = std::make_unique<TiffLzw>();
    lzw->begin(*file, {0, 6});
    EXPECT_EQ(lzw->next(1).size(), 1U);
    EXPECT_TRUE(lzw->next(1).empty());
    EXPECT_TRUE(lzw->next(1).empty());
    // Nor where a part of a row is left over.
    lzw->begin(*file, {0, 6});
    EXPECT_TRUE(lzw->next(2).empty());
    EXPECT_TRUE(lzw->next(1).empty());
}

} // namespace
} // namespace quillmark::test
