// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SampleKernels.h"
#include "detection/KernelTarget.h"
#include "detection/SampleScalar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

/// Runs with each kind of vectors that both this machine and the program know.
class SampleKernels : public ::testing::TestWithParam<std::int64_t>
{
protected:
    SampleKernels() { kernelTarget().Update(GetParam()); }
    ~SampleKernels() override { kernelTarget().Update(processorTargets()); }

    /// Random samples, a good part of which are at the ends of the range.
    template <typename Sample>
    std::vector<Sample> samples(std::size_t count)
    {
        constexpr std::uint32_t most = static_cast<Sample>(-1);
        std::vector<Sample> all(count);
        for (Sample &sample : all) {
            const auto kind = m_random() % 8;
            sample = static_cast<Sample>(kind == 0 ? 0 : kind == 1 ? most : m_random());
        }
        return all;
    }

private:
    std::minstd_rand m_random{7};
};

std::vector<std::int64_t> kinds()
{
    std::vector<std::int64_t> kinds;
    for (std::int64_t left = processorTargets() & HWY_TARGETS; left != 0; left &= left - 1) {
        kinds.push_back(left & -left);
    }
    return kinds;
}

/// Around the lengths of all vectors, and one that takes many of them.
const std::vector<int> counts{0, 1, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64, 65, 1031};

/// The input and output begin at any place: `shift` samples into their memory.
template <typename Sample>
void expectSameLuma(const std::vector<Sample> &samples, int channels, int count, std::size_t shift)
{
    const std::size_t room = static_cast<std::size_t>(count) + shift + 1;
    std::vector<Sample> expected(room, Sample{3});
    std::vector<Sample> got(room, Sample{3});

    scalar::lumaOfRgb(samples.data() + shift, channels, count, expected.data() + shift);
    lumaOfRgb(samples.data() + shift, channels, count, got.data() + shift);

    EXPECT_EQ(got, expected) << channels << " channels, " << count << " pixels";
}

TEST_P(SampleKernels, giveTheLumaOfTheScalarLoop)
{
    const auto bytes = samples<std::uint8_t>(5000);
    const auto words = samples<std::uint16_t>(5000);
    for (const int channels : {3, 4}) {
        for (const int count : counts) {
            expectSameLuma(bytes, channels, count, 1);
            expectSameLuma(words, channels, count, 1);
        }
    }
}

TEST_P(SampleKernels, keepWhiteWhiteAndGreyGrey)
{
    std::vector<std::uint16_t> luma(100);
    for (const std::uint16_t grey : std::vector<std::uint16_t>{0, 1, 255, 32768, 65534, 65535}) {
        lumaOfRgb(std::vector<std::uint16_t>(300, grey).data(), 3, 100, luma.data());
        EXPECT_EQ(luma, std::vector<std::uint16_t>(100, grey));
    }
}

TEST_P(SampleKernels, applyTheLevelsOfTheScalarLoop)
{
    const auto words = samples<std::uint16_t>(1100);
    for (const Levels &found : {Levels{0, 65535}, Levels{0, 1}, Levels{100, 101}, Levels{700, 9000},
                                Levels{40000, 65535}, Levels{5, 5}}) {
        const WholeLevels levels(found);
        for (const int count : counts) {
            std::vector<std::uint8_t> expected(1100, 3);
            std::vector<std::uint8_t> got(1100, 3);
            scalar::applyLevels(levels, words.data() + 1, count, expected.data() + 3);
            applyLevels(levels, words.data() + 1, count, got.data() + 3);
            EXPECT_EQ(got, expected) << found.black << " to " << found.white << ", " << count;
        }
    }
}

TEST_P(SampleKernels, spreadEveryValueBetweenTheLevels)
{
    std::vector<std::uint16_t> all(65536);
    for (std::size_t i = 0; i < all.size(); ++i) {
        all[i] = static_cast<std::uint16_t>(i);
    }
    std::vector<std::uint8_t> got(all.size());

    applyLevels(WholeLevels({1000, 3550}), all.data(), 65536, got.data());

    EXPECT_EQ(got[0], 0);
    EXPECT_EQ(got[1000], 0);
    EXPECT_EQ(got[2000], 100);
    EXPECT_EQ(got[3550], 255);
    EXPECT_EQ(got[65535], 255);
    EXPECT_TRUE(std::is_sorted(got.begin(), got.end()));
}

TEST_P(SampleKernels, swapAsTheScalarLoopDoes)
{
    for (const int count : counts) {
        std::vector<std::uint16_t> expected = samples<std::uint16_t>(1100);
        std::vector<std::uint16_t> got = expected;
        scalar::swapBytes(expected.data() + 1, static_cast<std::size_t>(count));
        swapBytes(got.data() + 1, static_cast<std::size_t>(count));
        EXPECT_EQ(got, expected) << count;
    }
}

INSTANTIATE_TEST_SUITE_P(Vectors, SampleKernels, ::testing::ValuesIn(kinds()),
                         [](const auto &target) {
                             return std::string(hwy::TargetName(target.param));
                         });

} // namespace
} // namespace quillmark::test
