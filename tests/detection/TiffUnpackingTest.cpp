// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffDeflate.h"
#include "detection/TiffInflate.h"
#include "detection/TiffRowBytes.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <random>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Bytes that pack to about half of their size.
Bytes someBytes(std::size_t count)
{
    std::minstd_rand random(5);
    Bytes bytes(count);
    std::generate(bytes.begin(), bytes.end(),
                  [&] { return static_cast<std::uint8_t>(random() >> 8U & 0x0FU); });
    return bytes;
}

class TiffUnpacking : public ::testing::Test
{
protected:
    /// The packed bytes stand behind `lead` others.
    TiffSpan write(const Bytes &bytes, std::size_t lead = 9)
    {
        m_packed.resize(compressBound(bytes.size()));
        auto size = static_cast<uLongf>(m_packed.size());
        compress(reinterpret_cast<Bytef *>(m_packed.data()), &size, bytes.data(), bytes.size());
        m_packed.resize(size);
        return rewrite(lead);
    }

    /// The file again, from m_packed.
    TiffSpan rewrite(std::size_t lead = 9)
    {
        m_file = FrameFile::open(m_folder.write("file", std::string(lead, 'x') + m_packed));
        return {lead, m_packed.size()};
    }

    std::string m_packed;
    std::optional<FrameFile> m_file;

private:
    TempDir m_folder;
};

TEST_F(TiffUnpacking, givesAllBytesInOneGo)
{
    const Bytes bytes = someBytes(300'000);
    const TiffSpan packed = write(bytes);
    Bytes out(bytes.size());
    TiffDeflate deflate;
    EXPECT_TRUE(deflate.unpack(*m_file, packed, out));
    EXPECT_EQ(out, bytes);
}

TEST_F(TiffUnpacking, refusesAnotherSizeInOneGo)
{
    const TiffSpan packed = write(someBytes(1000));
    TiffDeflate deflate;
    Bytes less(999);
    Bytes more(1001);
    EXPECT_FALSE(deflate.unpack(*m_file, packed, less));
    EXPECT_FALSE(deflate.unpack(*m_file, packed, more));
}

TEST_F(TiffUnpacking, refusesDamageInOneGo)
{
    const Bytes bytes = someBytes(100'000);
    const TiffSpan packed = write(bytes);
    Bytes out(bytes.size());
    TiffDeflate deflate;
    EXPECT_FALSE(deflate.unpack(*m_file, {packed.offset, packed.count / 2}, out));
    EXPECT_FALSE(deflate.unpack(*m_file, {packed.offset, 0}, out));
    EXPECT_FALSE(deflate.unpack(*m_file, {packed.offset + 1'000'000, 100}, out));
    m_packed.back() = static_cast<char>(m_packed.back() ^ 1); // the checksum
    rewrite();
    EXPECT_FALSE(deflate.unpack(*m_file, packed, out));
}

TEST_F(TiffUnpacking, doesNotBelieveAnEnormousPackedSize)
{
    const Bytes bytes = someBytes(1000);
    const TiffSpan packed = write(bytes);
    Bytes out(bytes.size());
    TiffDeflate deflate;
    // To set aside as much would fail.
    EXPECT_TRUE(deflate.unpack(*m_file, {packed.offset, std::uint64_t{1} << 60U}, out));
    EXPECT_EQ(out, bytes);
}

TEST_F(TiffUnpacking, givesRowAfterRow)
{
    const Bytes bytes = someBytes(400'000);
    const TiffSpan packed = write(bytes);
    TiffInflate inflate(*m_file, packed);
    Bytes row(1000);
    for (std::size_t i = 0; i < bytes.size(); i += row.size()) {
        ASSERT_TRUE(inflate.read(row)) << i;
        ASSERT_TRUE(std::equal(row.begin(), row.end(), &bytes[i])) << i;
    }
    EXPECT_FALSE(inflate.read(row));
}

TEST_F(TiffUnpacking, givesRowsUpToWhereTheBytesEnd)
{
    const Bytes bytes = someBytes(400'000);
    const TiffSpan packed = write(bytes);
    TiffInflate inflate(*m_file, {packed.offset, packed.count / 2});
    Bytes row(1000);
    std::size_t rows = 0;
    while (inflate.read(row)) {
        ASSERT_TRUE(std::equal(row.begin(), row.end(), &bytes[rows * row.size()])) << rows;
        ++rows;
    }
    EXPECT_NEAR(static_cast<double>(rows), 200, 20);
    EXPECT_FALSE(inflate.read(row));
}

TEST_F(TiffUnpacking, givesNothingWhereTheHeaderIsNone)
{
    const TiffSpan packed = write(someBytes(1000));
    m_packed[0] = '?';
    rewrite();
    TiffInflate inflate(*m_file, packed);
    Bytes row(10);
    EXPECT_FALSE(inflate.read(row));
}

TEST_F(TiffUnpacking, endsOnceAStopWasAskedFor)
{
    const TiffSpan packed = write(someBytes(400'000));
    std::stop_source stop;
    m_file->endAt(stop.get_token());
    TiffInflate inflate(*m_file, packed);
    Bytes row(1000);
    EXPECT_TRUE(inflate.read(row));
    stop.request_stop();
    int rows = 0;
    while (inflate.read(row)) {
        ++rows;
    }
    EXPECT_LT(rows, 300); // what was in memory
}

/// Packs a row of samples as the format says, and has it summed up again.
template <typename Sample>
void expectSamplesBack(int channels)
{
    const Bytes noise = someBytes(sizeof(Sample) * 60);
    std::vector<Sample> samples(60);
    std::memcpy(samples.data(), noise.data(), noise.size());
    for (Sample &sample : samples) {
        sample = static_cast<Sample>(sample * 0x91); // over the full range
    }
    std::vector<Sample> row = samples;
    for (std::size_t i = row.size() - 1; i >= static_cast<std::size_t>(channels); --i) {
        row[i] = static_cast<Sample>(row[i] - row[i - static_cast<std::size_t>(channels)]);
    }
    addDifferences({reinterpret_cast<std::uint8_t *>(row.data()), noise.size()},
                   static_cast<int>(8 * sizeof(Sample)), channels);
    EXPECT_EQ(row, samples) << channels;
}

TEST(TiffRowBytes, sumUpDifferencesOfAnyNumberOfChannels)
{
    for (const int channels : {1, 2, 3, 4, 5, 6}) {
        expectSamplesBack<std::uint8_t>(channels);
        expectSamplesBack<std::uint16_t>(channels);
        expectSamplesBack<std::uint32_t>(channels);
    }
}

TEST(TiffRowBytes, areSwappedByTheirDepth)
{
    const auto swapped = [](int bits) {
        Bytes bytes{1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                    13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24};
        TiffShape shape;
        shape.bits = bits;
        shape.swapped = true;
        toMachineOrder(bytes, shape);
        return Bytes(bytes.begin(), bytes.begin() + 4);
    };
    EXPECT_EQ(swapped(8), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(swapped(16), (Bytes{2, 1, 4, 3}));
    EXPECT_EQ(swapped(24), (Bytes{3, 2, 1, 6}));
    EXPECT_EQ(swapped(32), (Bytes{4, 3, 2, 1}));
    EXPECT_EQ(swapped(64), (Bytes{8, 7, 6, 5}));
}

} // namespace
} // namespace quillmark::test
