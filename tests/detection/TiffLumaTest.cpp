// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffLuma.h"
#include "detection/FramePictures.h"
#include "detection/LumaRows.h"
#include "detection/SampleConverter.h"
#include "detection/TiffFrame.h"
#include "detection/ToneStore.h"
#include "detection/WorkerThreads.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::test {
namespace {

struct LumaCase {
    std::string name;
    TiffOptions options;
    bool dim = false; ///< a picture in a small part of its range
};

void PrintTo(const LumaCase &tested, std::ostream *out)
{
    *out << tested.name;
}

/// Large enough for levels to be found from some of it.
RasterImage largePicture(bool dim)
{
    const RasterImage small = dim ? squeezed(colourPicture(), 0.02, 0.2) : colourPicture();
    RasterImage large{1203, 907, 3, {}};
    for (int y = 0; y < large.height; ++y) {
        for (int x = 0; x < large.width; ++x) {
            // Not the same everywhere.
            const int row = (y + x / small.width * 31) % small.height;
            for (int channel = 0; channel < 3; ++channel) {
                large.samples.push_back(small.at(x % small.width, row, channel));
            }
        }
    }
    return large;
}

std::optional<LumaImage> decodeWith(int threads, const FrameFile &file)
{
    const std::unique_ptr<TiffFrame> frame = TiffFrame::open(file, FrameChannels::luma);
    if (!frame) {
        return std::nullopt;
    }
    LumaRows rows(frame->width(), frame->height());
    if (!TiffLuma(*frame, rows, threads).read()) {
        return std::nullopt;
    }
    return rows.finish();
}

/// One row after another, as the format has them, with levels found from the rows that are
/// handed out for that.
LumaImage decodePlainly(const FrameFile &file)
{
    const std::unique_ptr<TiffFrame> frame = TiffFrame::open(file, FrameChannels::luma);
    SampleLuma luma(frame->layout());
    if (luma.isDeep()) {
        LevelSampler sampler(nominalWhite(frame->layout().type));
        const std::int64_t pixels = std::int64_t{frame->width()} * frame->height();
        const int step = static_cast<int>(pixels / 2'000'000 + 1);
        int first = 0;
        frame->visitSome([&](const SampleRow &row) {
            luma.sample(row.samples, row.count, first, step, sampler);
            first = (first + 7919) % step;
        });
        luma.setLevels(std::move(sampler).levels());
    }
    LumaRows rows(frame->width(), frame->height());
    frame->visitAll([&](const SampleRow &row) {
        luma.convert(row.samples, row.count, rows.rows(row.y, 1) + row.x);
    });
    return rows.finish();
}

class TiffLumaOf : public ::testing::TestWithParam<LumaCase>
{
protected:
    TiffLumaOf()
    {
        writeTiff(m_folder / "frame.tif", largePicture(GetParam().dim), GetParam().options);
    }

    void expectSameWithAnyThreads(const std::filesystem::path &path)
    {
        const std::optional<FrameFile> file = FrameFile::open(path);
        ASSERT_TRUE(file);
        const LumaImage plain = decodePlainly(*file);
        for (const int threads : {1, 2, 3, 7}) {
            const std::optional<LumaImage> luma = decodeWith(threads, *file);
            ASSERT_TRUE(luma) << threads;
            EXPECT_TRUE(luma->pixels == plain.pixels) << threads;
        }
    }

    TempDir m_folder;
};

TEST_P(TiffLumaOf, isTheSameWithAnyNumberOfThreads)
{
    expectSameWithAnyThreads(m_folder / "frame.tif");
}

TEST_P(TiffLumaOf, isTheSameWhereBlocksAreDamaged)
{
    std::string bytes = readFile(m_folder / "frame.tif");
    const std::vector<ByteRange> blocks = tiffBlocks(m_folder / "frame.tif");
    for (std::size_t i = 0; i < blocks.size(); i += 3) {
        const std::size_t middle = blocks[i].offset + blocks[i].size / 2;
        for (std::size_t at = middle; at < middle + std::min<std::size_t>(blocks[i].size / 8, 40);
             ++at) {
            bytes[at] = static_cast<char>(~bytes[at]);
        }
    }
    expectSameWithAnyThreads(m_folder.write("damaged.tif", bytes));
}

INSTANTIATE_TEST_SUITE_P(
    Files, TiffLumaOf,
    ::testing::Values(
        LumaCase{"stored", {.bits = 16}}, LumaCase{"storedStrip", {.bits = 16, .rowsPerStrip = 0}},
        LumaCase{"storedDim", {.bits = 16, .bigEndian = true}, true},
        LumaCase{"storedPlanes", {.bits = 16, .planarSeparate = true}, true},
        LumaCase{"storedTiles", {.tileWidth = 128, .tileLength = 64}},
        LumaCase{"lzw", {.bits = 16, .compression = TiffCompression::lzw}},
        LumaCase{"lzwDim",
                 {.bits = 16,
                  .compression = TiffCompression::lzw,
                  .predictor = TiffPredictor::horizontal,
                  .rowsPerStrip = 3},
                 true},
        LumaCase{"lzwStrip", {.compression = TiffCompression::lzw, .rowsPerStrip = 0}},
        LumaCase{"deflate", {.bits = 16, .compression = TiffCompression::deflate}},
        LumaCase{"deflateDim",
                 {.bits = 16,
                  .compression = TiffCompression::deflate,
                  .predictor = TiffPredictor::horizontal,
                  .rowsPerStrip = 5,
                  .bigEndian = true},
                 true},
        LumaCase{"deflateStrip",
                 {.bits = 16,
                  .compression = TiffCompression::deflate,
                  .predictor = TiffPredictor::horizontal,
                  .rowsPerStrip = 0},
                 true},
        LumaCase{"deflateStripWithoutLevels",
                 {.bits = 16, .compression = TiffCompression::deflate, .rowsPerStrip = 0}},
        LumaCase{"deflateTiles",
                 {.bits = 16,
                  .compression = TiffCompression::deflate,
                  .predictor = TiffPredictor::horizontal,
                  .tileWidth = 112,
                  .tileLength = 80},
                 true},
        LumaCase{"deflatePlanes",
                 {.bits = 16,
                  .compression = TiffCompression::deflate,
                  .predictor = TiffPredictor::horizontal,
                  .planarSeparate = true},
                 true},
        LumaCase{"packBits", {.compression = TiffCompression::packBits}},
        LumaCase{"floats",
                 {.bits = 32,
                  .compression = TiffCompression::deflate,
                  .predictor = TiffPredictor::floatingPoint,
                  .floatingPoint = true},
                 true}),
    [](const auto &tested) { return tested.param.name; });

TEST(TiffLuma, endsOnceAStopWasAskedFor)
{
    const TempDir folder;
    writeTiff(folder / "frame.tif", largePicture(false),
              {.bits = 16, .compression = TiffCompression::deflate});
    std::optional<FrameFile> file = FrameFile::open(folder / "frame.tif");
    std::stop_source stop;
    file->endAt(stop.get_token());
    const std::unique_ptr<TiffFrame> frame = TiffFrame::open(*file, FrameChannels::luma);
    ASSERT_TRUE(frame);
    LumaRows rows(frame->width(), frame->height());
    stop.request_stop();
    EXPECT_FALSE(TiffLuma(*frame, rows, 4).read());
}

TEST(ToneStore, keepsPiecesAsLongAsThereIsRoom)
{
    ToneStore store(4, 10);
    EXPECT_TRUE(store.keep(2, std::vector<std::uint8_t>{1, 2, 3, 4}));
    EXPECT_FALSE(store.keep(0, std::vector<std::uint8_t>(7)));
    EXPECT_TRUE(store.keep(3, std::vector<std::uint8_t>{5, 6, 7, 8, 9, 10}));
    EXPECT_TRUE(store.keep(1, {}));
    EXPECT_FALSE(store.has(0));
    EXPECT_TRUE(store.has(1));
    EXPECT_TRUE(store.tones(1).empty());
    ASSERT_EQ(store.tones(2).size(), 4U);
    EXPECT_EQ(store.tones(2)[3], 4);
    ASSERT_EQ(store.tones(3).size(), 6U);
    EXPECT_EQ(store.tones(3)[0], 5);
}

TEST(WorkerThreads, callsEachOnceAndWaits)
{
    std::atomic<int> sum = 0;
    runWorkers(5, [&](int worker) { sum += 1 << worker; });
    EXPECT_EQ(sum, 31);
}

TEST(WorkerThreads, throwsWhatAnyOfThemThrowsOnceAllAreOver)
{
    for (const int thrower : {0, 2}) {
        std::atomic<int> over = 0;
        const auto work = [&](int worker) {
            if (worker == thrower) {
                throw std::runtime_error("thrown");
            }
            ++over;
        };
        EXPECT_THROW(runWorkers(3, work), std::runtime_error);
        EXPECT_EQ(over, 2);
    }
}

} // namespace
} // namespace quillmark::test
