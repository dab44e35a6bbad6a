// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/MarkPool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace quillmark {
namespace {

using testing::SizeIs;

FinderMark markAt(double x, double y, int hits)
{
    return {.x = x, .y = y, .module = 4, .hits = hits, .diagonals = 1};
}

TEST(MarkPool, joinsWhatSeveralLooksSawOfOnePattern)
{
    MarkPool pool;
    pool.add(std::vector{markAt(100, 100, 2)});
    pool.add(std::vector{markAt(103, 98, 3)});
    ASSERT_THAT(pool.marks(), SizeIs(1));
    EXPECT_EQ(pool.marks()[0].hits, 5);
}

TEST(MarkPool, theLookThatSawMoreTellsThePlace)
{
    MarkPool pool;
    pool.add(std::vector{markAt(100, 100, 2)});
    FinderMark better = markAt(103, 98, 3);
    better.diagonals = 2;
    pool.add(std::vector{better});
    EXPECT_EQ(pool.marks()[0].x, 103);
    EXPECT_EQ(pool.marks()[0].diagonals, 2);
    pool.add(std::vector{markAt(99, 100, 1)});
    EXPECT_EQ(pool.marks()[0].x, 103);
    EXPECT_EQ(pool.marks()[0].diagonals, 2);
}

TEST(MarkPool, keepsApartWhatIsNotOne)
{
    MarkPool pool;
    pool.add(std::vector{markAt(100, 100, 2)});
    FinderMark light = markAt(100, 100, 2);
    light.isDark = false;
    FinderMark large = markAt(100, 100, 2);
    large.module = 9;
    pool.add(std::vector{light, large, markAt(107, 100, 2)});
    EXPECT_THAT(pool.marks(), SizeIs(4));
}

TEST(MarkPool, holdsTheSurestOfVeryMany)
{
    std::vector<FinderMark> marks;
    for (int i = 0; i < 3000; ++i) {
        marks.push_back(markAt(20 * i, 0, i == 2999 ? 7 : 1));
    }
    MarkPool pool;
    pool.add(marks);
    ASSERT_THAT(pool.marks(), SizeIs(1000));
    EXPECT_EQ(pool.marks().front().hits, 7);
    pool.add(marks);
    EXPECT_THAT(pool.marks(), SizeIs(1000));
}

} // namespace
} // namespace quillmark
