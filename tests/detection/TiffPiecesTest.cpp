// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffPieces.h"
#include "detection/TiffQueue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <future>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

TiffShape strips(int width, int height, int rows, TiffCoding coding)
{
    TiffShape shape;
    shape.width = width;
    shape.height = height;
    shape.blockWidth = width;
    shape.blockHeight = rows;
    shape.rowBytes = static_cast<std::size_t>(width);
    shape.coding = coding;
    return shape;
}

TiffShape tiles(int width, int height, int across, int down)
{
    TiffShape shape = strips(width, height, down, TiffCoding::lzw);
    shape.tiled = true;
    shape.blockWidth = across;
    shape.rowBytes = static_cast<std::size_t>(across);
    return shape;
}

struct ShapeCase {
    std::string name;
    TiffShape shape;
};

void PrintTo(const ShapeCase &tested, std::ostream *out)
{
    *out << tested.name;
}

class TiffPiecesOf : public ::testing::TestWithParam<ShapeCase>
{};

TEST_P(TiffPiecesOf, coverEachPixelOnceFromTheTop)
{
    const TiffShape &shape = GetParam().shape;
    const TiffPieces all = TiffPieces::all(shape);
    std::vector<int> seen(static_cast<std::size_t>(shape.width) *
                          static_cast<std::size_t>(shape.height));
    int top = 0;
    for (int i = 0; i < all.count(); ++i) {
        const TiffPiece piece = all.at(i);
        EXPECT_GE(piece.y, top);
        top = piece.y;
        for (int y = piece.y; y < piece.y + piece.height; ++y) {
            for (int x = piece.x; x < piece.x + piece.width; ++x) {
                ++seen.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(shape.width) +
                          static_cast<std::size_t>(x));
            }
        }
    }
    EXPECT_EQ(seen, std::vector<int>(seen.size(), 1));
}

TEST_P(TiffPiecesOf, someAreThoseOfAllThatTheySay)
{
    const TiffShape &shape = GetParam().shape;
    const TiffPieces all = TiffPieces::all(shape);
    const TiffPieces some = TiffPieces::some(shape);
    std::set<int> found;
    for (int i = 0; i < all.count(); ++i) {
        if (const std::optional<int> number = some.find(i)) {
            found.insert(*number);
            EXPECT_EQ(some.at(*number).x, all.at(i).x);
            EXPECT_EQ(some.at(*number).y, all.at(i).y);
            EXPECT_EQ(some.at(*number).width, all.at(i).width);
            EXPECT_EQ(some.at(*number).height, all.at(i).height);
        }
    }
    const bool loose = found.empty();
    EXPECT_EQ(loose ? 0U : static_cast<std::size_t>(some.count()), found.size());
    EXPECT_EQ(loose, !some.find(0).has_value());
    EXPECT_LE(some.at(some.count() - 1).y, shape.height - 1);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, TiffPiecesOf,
    ::testing::Values(ShapeCase{"bandsOfOneStrip", strips(2000, 1001, 1001, TiffCoding::stored)},
                      ShapeCase{"bandsOfStrips", strips(2000, 1001, 300, TiffCoding::stored)},
                      ShapeCase{"lowStrips", strips(2000, 1001, 2, TiffCoding::stored)},
                      ShapeCase{"packedStrips", strips(2000, 1001, 3, TiffCoding::deflate)},
                      ShapeCase{"packedStrip", strips(2000, 1001, 1001, TiffCoding::lzw)},
                      ShapeCase{"fewPixels", strips(200, 100, 7, TiffCoding::lzw)},
                      ShapeCase{"fewStored", strips(200, 100, 7, TiffCoding::stored)},
                      ShapeCase{"tiles", tiles(2000, 1001, 128, 64)},
                      ShapeCase{"tileRow", tiles(2000, 601, 16, 608)},
                      ShapeCase{"oneTile", tiles(200, 100, 256, 256)}),
    [](const auto &tested) { return tested.param.name; });

class TiffQueueOfTiles : public ::testing::Test
{
protected:
    // Two rows of two tiles and one of the last, lower ones.
    TiffShape m_shape = tiles(30, 40, 16, 16);
    TiffPieces m_pieces = TiffPieces::all(m_shape);
    std::vector<int> m_ends;
    TiffQueue m_queue{m_pieces, 2, [this](int end) { m_ends.push_back(end); }};
};

TEST_F(TiffQueueOfTiles, handsOutEachPieceOnceInOrder)
{
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(m_queue.take(i % 2), i);
    }
    EXPECT_EQ(m_queue.take(0), std::nullopt);
    EXPECT_EQ(m_queue.take(1), std::nullopt);
}

TEST_F(TiffQueueOfTiles, saysThatRowsAreOverOnceAllTilesAboveAre)
{
    m_queue.take(0); // 0
    m_queue.take(1); // 1
    m_queue.take(1); // 2, 1 is over
    m_queue.take(1); // 3, 2 is over
    EXPECT_TRUE(m_ends.empty());
    m_queue.take(0); // 4, 0 is over
    ASSERT_FALSE(m_ends.empty());
    EXPECT_EQ(m_ends.back(), 16);
    m_queue.take(1); // 5, 3 is over
    EXPECT_EQ(m_ends.back(), 32);
    EXPECT_TRUE(std::is_sorted(m_ends.begin(), m_ends.end()));
}

TEST_F(TiffQueueOfTiles, handsOutNothingOnceClosed)
{
    m_queue.take(0);
    m_queue.close();
    EXPECT_EQ(m_queue.take(1), std::nullopt);
    EXPECT_FALSE(m_queue.awaitTurn(1));
}

TEST_F(TiffQueueOfTiles, givesTurnsInOrder)
{
    EXPECT_TRUE(m_queue.awaitTurn(0));
    std::promise<void> isOver;
    std::future<bool> second = std::async(std::launch::async, [&] {
        const bool turn = m_queue.awaitTurn(1);
        // Nothing but leave() lets it come to this.
        return turn &&
               isOver.get_future().wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
    isOver.set_value();
    m_queue.leave(0);
    EXPECT_TRUE(second.get());
}

TEST(TiffQueueOfStrips, saysHowFarTheFirstPieceIs)
{
    const TiffShape shape = strips(1000, 900, 450, TiffCoding::deflate);
    const TiffPieces pieces = TiffPieces::all(shape);
    std::vector<int> ends;
    TiffQueue queue(pieces, 2, [&](int end) { ends.push_back(end); });
    queue.take(0);
    queue.take(1);

    queue.reach(1, 600); // those above it are not over
    EXPECT_TRUE(ends.empty());
    queue.reach(0, 64);
    EXPECT_EQ(ends, std::vector<int>{64});
    queue.take(0);
    EXPECT_EQ(ends, (std::vector<int>{64, 450}));
    queue.reach(1, 700);
    EXPECT_EQ(ends, (std::vector<int>{64, 450, 700}));
}

} // namespace
} // namespace quillmark::test
