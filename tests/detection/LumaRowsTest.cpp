// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/LumaRows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace quillmark {
namespace {

void writeRow(LumaRows &rows, int y)
{
    std::fill_n(rows.rows(y, 1), rows.width(), static_cast<std::uint8_t>(y));
}

TEST(LumaRows, whatNobodyWritesIsMidGrey)
{
    LumaRows rows(3, 4);
    writeRow(rows, 1);
    EXPECT_THAT(rows.finish().pixels,
                testing::ElementsAre(128, 128, 128, 1, 1, 1, 128, 128, 128, 128, 128, 128));
}

TEST(LumaRows, awaitingGivesWhatIsFinalAlready)
{
    LumaRows rows(5, 100);
    EXPECT_EQ(rows.await(0), 0);
    rows.advance(30);
    rows.advance(20); // a worker that was late
    EXPECT_EQ(rows.await(10), 30);
    rows.close();
    EXPECT_EQ(rows.await(50), 100);
}

TEST(LumaRows, awaitingEndsWithTheImage)
{
    LumaRows rows(5, 100);
    auto awaiting = std::async(std::launch::async, [&rows] { return rows.await(100); });
    rows.advance(60);
    rows.close();
    EXPECT_EQ(awaiting.get(), 100);
    EXPECT_THAT(rows.finish().pixels, testing::Each(LumaRows::midGrey));
}

TEST(LumaRows, awaitingEndsWhereTheImageIsAbandoned)
{
    LumaRows rows(5, 100);
    auto awaiting = std::async(std::launch::async, [&rows] { return rows.await(100); });
    rows.advance(7);
    rows.abandon();
    EXPECT_EQ(awaiting.get(), 7);
}

TEST(LumaRows, rowsBecomeFinalInTurnsWhileTheyAreRead)
{
    constexpr int height = 2000;
    LumaRows rows(64, height);
    auto reading = std::async(std::launch::async, [&rows] {
        int wrong = 0;
        for (int y = 0; y < height; ++y) {
            wrong += rows.await(y + 1) <= y || rows.view().row(y)[63] != y % 256 ? 1 : 0;
        }
        return wrong;
    });
    for (int y = 0; y < height; ++y) {
        writeRow(rows, y);
        rows.advance(y + 1);
    }
    EXPECT_EQ(reading.get(), 0);
}

TEST(LumaRows, severalThreadsMayWrite)
{
    constexpr int height = 800;
    constexpr int writers = 4;
    LumaRows rows(512, height);
    std::vector<std::jthread> threads;
    for (int first = 0; first < writers; ++first) {
        threads.emplace_back([&rows, first] {
            for (int y = first; y < height; y += writers) {
                writeRow(rows, y);
            }
        });
    }
    threads.clear();
    const LumaImage image = rows.finish();
    for (int y = 0; y < height; ++y) {
        EXPECT_EQ(std::count(image.row(y), image.row(y) + 512, static_cast<std::uint8_t>(y)), 512)
            << y;
    }
}

} // namespace
} // namespace quillmark
