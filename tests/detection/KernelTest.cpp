// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/KernelTarget.h"
#include "detection/LumaKernels.h"
#include "detection/RunKernels.h"
#include "detection/ScalarKernels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace quillmark {
namespace {

using testing::ElementsAre;

/// Has the kernels run with each kind of vectors that this processor has, one after another.
class Kernels : public testing::TestWithParam<std::int64_t>
{
protected:
    void SetUp() override { kernelTarget().Update(GetParam()); }
    void TearDown() override { kernelTarget().Update(processorTargets()); }
};

std::vector<std::int64_t> kinds()
{
    std::vector<std::int64_t> kinds;
    std::int64_t left = processorTargets() & HWY_TARGETS;
    for (; left != 0; left &= left - 1) {
        kinds.push_back(left & -left);
    }
    return kinds;
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, Kernels, testing::ValuesIn(kinds()),
                         [](const auto &kind) { return hwy::TargetName(kind.param); });

/// Every length up to some vectors, and that of a row.
std::vector<std::size_t> lengths()
{
    std::vector<std::size_t> lengths{1000, 6001};
    for (std::size_t i = 1; i < 200; ++i) {
        lengths.push_back(i);
    }
    return lengths;
}

enum class Kind { grain, soft, extreme };
constexpr std::array rowKinds{Kind::grain, Kind::soft, Kind::extreme};

std::vector<std::uint8_t> someRow(std::size_t length, Kind kind, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::uint8_t> row(length);
    for (std::size_t x = 0; x < length; ++x) {
        const auto noise = static_cast<double>(random() % 256);
        const double wave = 127.5 + 100 * std::sin(static_cast<double>(x) * 0.9) + noise / 16;
        const double level = kind == Kind::grain  ? noise
                             : kind == Kind::soft ? wave
                             : random() % 2 == 0  ? 0
                                                  : 255;
        row[x] = static_cast<std::uint8_t>(level);
    }
    return row;
}

/// Calls `check` with rows of every kind and length.
template <typename Check>
void withRows(std::size_t more, const Check &check)
{
    for (const std::size_t length : lengths()) {
        for (const Kind kind : rowKinds) {
            SCOPED_TRACE(testing::Message() << length << " of kind " << static_cast<int>(kind));
            const auto seed = static_cast<unsigned>(length * 8 + static_cast<std::size_t>(kind));
            check(someRow(length + more, kind, seed), length);
        }
    }
}

std::vector<std::int16_t> flattened(const std::vector<std::uint8_t> &row)
{
    std::vector<std::uint16_t> scratch(flattenScratch(row.size()));
    std::vector<std::int16_t> flat(row.size());
    flattenRow(row.data(), row.size(), scratch.data(), flat.data());
    return flat;
}

TEST_P(Kernels, meansOfTriplesAreThoseOfScalarCode)
{
    for (const std::size_t count : lengths()) {
        const std::array rows{someRow(3 * count, Kind::grain, 1), someRow(3 * count, Kind::soft, 2),
                              someRow(3 * count, Kind::extreme, 3)};
        const std::array pointers{rows[0].data(), rows[1].data(), rows[2].data()};
        std::vector<std::uint8_t> means(count);
        std::vector<std::uint8_t> expected(count);
        meanOfTriples({pointers[0], pointers[1], pointers[2]}, count, means.data());
        scalar::meanOfTriples({pointers[0], pointers[1], pointers[2]}, 0, count, expected.data());
        ASSERT_EQ(means, expected) << count;
    }
}

TEST_P(Kernels, everySumOfTriplesIsRounded)
{
    constexpr std::size_t count = 9 * 255 + 1;
    std::array<std::vector<std::uint8_t>, 3> rows;
    for (std::size_t sum = 0; sum < count; ++sum) {
        for (std::size_t i = 0; i < 9; ++i) {
            rows[i / 3].push_back(static_cast<std::uint8_t>((sum + i) / 9));
        }
    }
    std::vector<std::uint8_t> means(count);
    meanOfTriples({rows[0].data(), rows[1].data(), rows[2].data()}, count, means.data());
    for (std::size_t sum = 0; sum < count; ++sum) {
        ASSERT_EQ(means[sum], std::lround(static_cast<double>(sum) / 9)) << sum;
    }
}

TEST_P(Kernels, flatteningIsThatOfScalarCode)
{
    withRows(0, [](const std::vector<std::uint8_t> &row, std::size_t length) {
        std::vector<std::int16_t> expected(length);
        scalar::flattenRow(row.data(), length, 0, length, expected.data());
        ASSERT_EQ(flattened(row), expected);
    });
}

TEST_P(Kernels, flatteningTakesTheMeanOfTheNeighbourhoodAway)
{
    EXPECT_THAT(flattened(std::vector<std::uint8_t>(300, 77)),
                testing::Each(testing::AllOf(testing::Ge(0), testing::Le(1))));
    // Half of the neighbourhood is 100 lighter: 50 grey levels on either side, sixteenfold.
    std::vector<std::uint8_t> edge(200, 50);
    std::fill(edge.begin() + 100, edge.end(), std::uint8_t{150});
    const std::vector<std::int16_t> flat = flattened(edge);
    EXPECT_NEAR(flat[98], -16 * 100 * 23 / 49.0, 1);
    EXPECT_NEAR(flat[101], 16 * 100 * 23 / 49.0, 1);
    EXPECT_NEAR(flat[10], 0, 1);
}

TEST_P(Kernels, weightedSumsAreThoseOfScalarCode)
{
    withRows(4, [](const std::vector<std::uint8_t> &row, std::size_t length) {
        std::array<const std::uint8_t *, 5> rows{};
        for (std::size_t i = 0; i < rows.size(); ++i) {
            rows[i] = row.data() + i;
        }
        std::vector<std::uint16_t> sums(length);
        std::vector<std::uint16_t> expected(length);
        sumRows(rows, length, sums.data());
        scalar::sumRows(rows, 0, length, expected.data());
        ASSERT_EQ(sums, expected);
    });
}

TEST_P(Kernels, sharpeningIsThatOfScalarCode)
{
    withRows(0, [](const std::vector<std::uint8_t> &row, std::size_t length) {
        std::vector<std::uint16_t> sums(length + 4);
        for (std::size_t i = 0; i < sums.size(); ++i) {
            sums[i] = static_cast<std::uint16_t>(16 * row[(i * 7) % length]);
        }
        for (const int quarters : {1, 8, 16}) {
            std::vector<std::uint8_t> sharp(length);
            std::vector<std::uint8_t> expected(length);
            sharpenRow(row.data(), sums.data(), length, quarters, sharp.data());
            scalar::sharpenRow(row.data(), sums.data(), quarters, 0, length, expected.data());
            ASSERT_EQ(sharp, expected) << quarters;
        }
    });
}

TEST_P(Kernels, stepsAreThoseOfScalarCode)
{
    for (const std::size_t cells : {1U, 2U, 3U, 40U}) {
        const auto row = someRow(cells * cellPixels, Kind::extreme, 4);
        const auto below = someRow(cells * cellPixels, Kind::grain, 5);
        std::vector<std::uint64_t> sums(2 * cells, 7); // they are added to
        std::vector<std::uint64_t> expected = sums;
        addSteps(row.data(), below.data(), cells, sums.data());
        scalar::addSteps(row.data(), below.data(), cells, expected.data());
        ASSERT_EQ(sums, expected);
    }
}

TEST_P(Kernels, mirroredSumsAreThoseOfScalarCode)
{
    constexpr std::array weights{0.31F, -0.17F, 0.05F, 0.013F};
    for (const std::size_t reach : {1U, 2U, 4U}) {
        withRows(6, [&](const std::vector<std::uint8_t> &row, std::size_t length) {
            const std::vector<float> values(row.begin(), row.end());
            std::vector<float> sums(length, 0.7F);
            std::vector<float> expected = sums;
            addMirrored(values.data() + 3, weights.data(), reach, length, sums.data());
            scalar::addMirrored(values.data() + 3, weights.data(), reach, 0, length,
                                expected.data());
            ASSERT_EQ(sums, expected);
        });
    }
}

TEST_P(Kernels, signChangesAndRunsAreThoseOfScalarCode)
{
    withRows(0, [](const std::vector<std::uint8_t> &row, std::size_t length) {
        const std::vector<std::int16_t> flat = flattened(row);
        std::vector<std::int32_t> edges(length + runSlack);
        std::vector<std::int32_t> expected(length + runSlack);
        edges.resize(findSignChanges(flat.data(), length, edges.data()));
        expected.resize(scalar::findSignChanges(flat.data(), 1, length, expected.data()));
        ASSERT_EQ(edges, expected);

        std::vector<float> places(edges.size());
        std::vector<float> expectedPlaces(edges.size());
        placeEdges(flat.data(), edges.data(), edges.size(), places.data());
        scalar::placeEdges(flat.data(), edges.data(), 0, edges.size(), expectedPlaces.data());
        ASSERT_EQ(places, expectedPlaces);

        std::vector<std::int32_t> found(edges.size() + runSlack);
        std::vector<std::int32_t> expectedFound(edges.size() + runSlack);
        found.resize(findFinderRuns(places.data(), places.size(), found.data()));
        const std::size_t end = places.size() < 6 ? 0 : places.size() - 5;
        expectedFound.resize(scalar::findFinderRuns(places.data(), 0, end, expectedFound.data()));
        ASSERT_EQ(found, expectedFound);
    });
}

TEST_P(Kernels, aZeroCountsAsPositive)
{
    const std::vector<std::int16_t> flat{0, 5, -1, 0, 0, -3, -2, 7};
    std::vector<std::int32_t> edges(flat.size() + runSlack);
    edges.resize(findSignChanges(flat.data(), flat.size(), edges.data()));
    EXPECT_THAT(edges, ElementsAre(2, 3, 5, 7));
    std::vector<float> places(edges.size());
    placeEdges(flat.data(), edges.data(), edges.size(), places.data());
    EXPECT_THAT(places,
                ElementsAre(testing::FloatEq(1 + 5.0F / 6), 3, 4, testing::FloatEq(6 + 2.0F / 9)));
}

TEST_P(Kernels, onlyRunsOfAPatternAreFound)
{
    const auto foundIn = [](const std::vector<float> &runs) {
        std::vector<float> places{10};
        for (const float run : runs) {
            places.push_back(places.back() + run);
        }
        std::vector<std::int32_t> found(places.size() + runSlack);
        found.resize(findFinderRuns(places.data(), places.size(), found.data()));
        return found;
    };
    for (const float module : {1.7F, 3.0F, 8.9F}) {
        EXPECT_THAT(foundIn({5 * module, module, module, 3 * module, module, module, 9 * module}),
                    ElementsAre(1))
            << module;
    }
    EXPECT_THAT(foundIn({1.3F, 1.3F, 3.9F, 1.3F, 1.3F}), testing::IsEmpty());
    EXPECT_THAT(foundIn({9.5F, 9.5F, 28.5F, 9.5F, 9.5F}), testing::IsEmpty());
    EXPECT_THAT(foundIn({3, 3, 3, 3, 3}), testing::IsEmpty());
    EXPECT_THAT(foundIn({3, 3, 9, 3, 6.5F}), testing::IsEmpty());
    EXPECT_THAT(foundIn({4, 2, 10, 2, 4}), ElementsAre(0));
    EXPECT_THAT(foundIn(std::vector<float>(100, 4)), testing::IsEmpty());
}

} // namespace
} // namespace quillmark
