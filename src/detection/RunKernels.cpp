// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/RunKernels.h"

#include "detection/KernelTarget.h"
#include "detection/ScalarKernels.h"

#include <array>
#include <bit>

// Has this file compiled once for each kind of vectors.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detection/RunKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace quillmark::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Numbers = hn::ScalableTag<std::int32_t>;
using Floats = hn::RebindToFloat<Numbers>;
using FloatVector = hn::Vec<Floats>;
using FloatMask = hn::Mask<Floats>;

constexpr std::array<std::size_t, 4> outerRuns{0, 1, 3, 4};

/// No more bytes than were stored at once: the processor hands on what it has just stored only
/// to loads that ask for no more.
template <std::size_t count>
HWY_INLINE std::uint64_t joinBytes(const std::array<std::uint8_t, sizeof(std::uint64_t)> &bytes)
{
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < count; ++i) {
        bits |= static_cast<std::uint64_t>(bytes[i]) << (8 * i);
    }
    return bits;
}

std::size_t FindSignChanges(const std::int16_t *flat, std::size_t width, std::int32_t *edges)
{
    const hn::ScalableTag<std::int16_t> shorts;
    const std::size_t lanes = hn::Lanes(shorts);
    static_assert(hn::MaxLanes(hn::ScalableTag<std::int16_t>()) <= runSlack);
    // As many as there often are, so that the branch behind them is mostly foreseen.
    constexpr std::size_t together = 8;
    constexpr std::size_t maskBytes = (hn::MaxLanes(hn::ScalableTag<std::int16_t>()) + 7) / 8;
    std::array<std::uint8_t, sizeof(std::uint64_t)> bytes{};
    std::size_t count = 0;
    std::size_t x = 1;
    for (; x + lanes <= width; x += lanes) {
        const auto change = hn::Xor(hn::LoadU(shorts, flat + x - 1), hn::LoadU(shorts, flat + x));
        hn::StoreMaskBits(shorts, hn::Lt(change, hn::Zero(shorts)), bytes.data());
        std::uint64_t bits = joinBytes<maskBytes>(bytes);
        const auto found = static_cast<std::size_t>(std::popcount(bits));
        for (std::size_t done = 0; done < found; done += together) {
            for (std::size_t i = 0; i < together; ++i) {
                edges[count + done + i] = static_cast<std::int32_t>(x) + std::countr_zero(bits);
                bits &= bits - 1;
            }
        }
        count += found;
    }
    return count + scalar::findSignChanges(flat, x, width, edges + count);
}

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX2
void PlaceEdges(const std::int16_t *flat, const std::int32_t *edges, std::size_t count,
                float *places)
{
    const Numbers numbers;
    const Floats floats;
    const std::size_t lanes = hn::Lanes(numbers);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        // Both numbers of a pair at once, which need not be aligned as one.
        const auto x = hn::LoadU(numbers, edges + i);
        const auto pair = hn::GatherOffset(numbers, reinterpret_cast<const std::int32_t *>(flat),
                                           hn::Sub(hn::Add(x, x), hn::Set(numbers, 2)));
        const auto before = hn::ShiftRight<16>(hn::ShiftLeft<16>(pair));
        const auto here = hn::ShiftRight<16>(pair);
        const auto rise = hn::ConvertTo(floats, here);
        const auto step = hn::ConvertTo(floats, hn::Sub(here, before));
        hn::StoreU(hn::Sub(hn::ConvertTo(floats, x), hn::Div(rise, step)), floats, places + i);
    }
    scalar::placeEdges(flat, edges, i, count, places);
}
#else
/// Where the processor does not gather numbers by itself, vectors gain nothing.
void PlaceEdges(const std::int16_t *flat, const std::int32_t *edges, std::size_t count,
                float *places)
{
    scalar::placeEdges(flat, edges, 0, count, places);
}
#endif

HWY_INLINE FloatMask isBetween(FloatVector value, FloatVector above, FloatVector below)
{
    return hn::And(hn::Gt(value, above), hn::Lt(value, below));
}

std::size_t FindFinderRuns(const float *places, std::size_t count, std::int32_t *found)
{
    const Floats floats;
    const Numbers numbers;
    const std::size_t lanes = hn::Lanes(floats);
    const auto set = [floats](float value) HWY_ATTR { return hn::Set(floats, value); };
    const std::size_t end = count < 6 ? 0 : count - 5;
    std::size_t foundCount = 0;
    std::size_t i = 0;
    for (; i + lanes <= end; i += lanes) {
        const auto run = [&](std::size_t from, std::size_t to) HWY_ATTR {
            return hn::Sub(hn::LoadU(floats, places + i + to),
                           hn::LoadU(floats, places + i + from));
        };
        const auto total = run(0, 5);
        auto fits = isBetween(total, set(scalar::leastTotal), set(scalar::mostTotal));
        fits = hn::And(fits, isBetween(run(2, 3), hn::Mul(total, set(scalar::leastMiddle)),
                                       hn::Mul(total, set(scalar::mostMiddle))));
        const auto least = hn::Mul(total, set(scalar::leastOuter));
        const auto most = hn::Mul(total, set(scalar::mostOuter));
        for (const std::size_t outer : outerRuns) {
            fits = hn::And(fits, isBetween(run(outer, outer + 1), least, most));
        }
        if (!hn::AllFalse(floats, fits)) {
            const auto indices = hn::Iota(numbers, static_cast<std::int32_t>(i));
            const auto wanted = hn::RebindMask(numbers, fits);
            // Storing what is wanted alone is slower than all of it.
            hn::StoreU(hn::Compress(indices, wanted), numbers, found + foundCount);
            foundCount += hn::CountTrue(numbers, wanted);
        }
    }
    return foundCount + scalar::findFinderRuns(places, i, end, found + foundCount);
}

} // namespace
} // namespace quillmark::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quillmark {

std::size_t findSignChanges(const std::int16_t *flat, std::size_t width, std::int32_t *edges)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(FindSignChanges))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(FindSignChanges), HWY_CHOOSE_FALLBACK(FindSignChanges)};
    return bestKind(kinds)(flat, width, edges);
}

void placeEdges(const std::int16_t *flat, const std::int32_t *edges, std::size_t count,
                float *places)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(PlaceEdges))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(PlaceEdges), HWY_CHOOSE_FALLBACK(PlaceEdges)};
    bestKind(kinds)(flat, edges, count, places);
}

std::size_t findFinderRuns(const float *places, std::size_t count, std::int32_t *found)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(FindFinderRuns))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(FindFinderRuns), HWY_CHOOSE_FALLBACK(FindFinderRuns)};
    return bestKind(kinds)(places, count, found);
}

} // namespace quillmark
#endif
