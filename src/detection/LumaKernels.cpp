// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/LumaKernels.h"

#include "detection/KernelTarget.h"
#include "detection/ScalarKernels.h"

// Has this file compiled once for each kind of vectors.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detection/LumaKernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace quillmark::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::uint16_t, Bytes>;
using HalfBytes = hn::Half<Bytes>; // as many as there are words
using WordVector = hn::Vec<Words>;

HWY_INLINE WordVector loadWords(const std::uint8_t *from)
{
    return hn::PromoteTo(Words(), hn::LoadU(HalfBytes(), from));
}

HWY_INLINE WordVector addUp(WordVector a, WordVector b, WordVector c, WordVector d)
{
    return hn::Add(hn::Add(a, b), hn::Add(c, d));
}

void MeanOfTriples(const std::array<const std::uint8_t *, 3> &rows, std::size_t count,
                   std::uint8_t *out)
{
    const HalfBytes bytes;
    const Words words;
    const std::size_t lanes = hn::Lanes(words);
    const auto half = hn::Set(words, 4);
    const auto ninth = hn::Set(words, 7282); // 65536/9; exact up to 9 * 255 + 4
    std::size_t x = 0;
    for (; x + lanes <= count; x += lanes) {
        auto sum = half;
        for (const std::uint8_t *row : rows) {
            hn::Vec<HalfBytes> a;
            hn::Vec<HalfBytes> b;
            hn::Vec<HalfBytes> c;
            hn::LoadInterleaved3(bytes, row + 3 * x, a, b, c);
            sum = addUp(sum, hn::PromoteTo(words, a), hn::PromoteTo(words, b),
                        hn::PromoteTo(words, c));
        }
        hn::StoreU(
            hn::DemoteTo(bytes, hn::BitCast(hn::RebindToSigned<Words>(), hn::MulHigh(sum, ninth))),
            bytes, out + x);
    }
    scalar::meanOfTriples(rows, x, count, out);
}

/// sums[i] = in[i] + in[i + step] + in[i + 2 step] + in[i + 3 step]
void SumFourBytes(const std::uint8_t *in, std::size_t count, std::uint16_t *sums)
{
    const std::size_t lanes = hn::Lanes(Words());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        hn::StoreU(addUp(loadWords(in + i), loadWords(in + i + 1), loadWords(in + i + 2),
                         loadWords(in + i + 3)),
                   Words(), sums + i);
    }
    for (; i < count; ++i) {
        sums[i] = static_cast<std::uint16_t>(in[i] + in[i + 1] + in[i + 2] + in[i + 3]);
    }
}

void SumFourSums(const std::uint16_t *in, std::size_t count, std::uint16_t *sums)
{
    const Words words;
    const std::size_t lanes = hn::Lanes(words);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        hn::StoreU(addUp(hn::LoadU(words, in + i), hn::LoadU(words, in + i + 4),
                         hn::LoadU(words, in + i + 8), hn::LoadU(words, in + i + 12)),
                   words, sums + i);
    }
    for (; i < count; ++i) {
        sums[i] = static_cast<std::uint16_t>(in[i] + in[i + 4] + in[i + 8] + in[i + 12]);
    }
}

/// The neighbourhood's 49 pixels are three times sixteen and one.
void FlattenRow(const std::uint8_t *row, std::size_t width, std::uint16_t *scratch,
                std::int16_t *flat)
{
    constexpr std::size_t reach = scalar::flatReach;
    constexpr std::size_t around = 2 * reach + 1;
    if (width < around) {
        scalar::flattenRow(row, width, 0, width, flat);
        return;
    }
    std::uint16_t *fours = scratch;
    std::uint16_t *sixteens = scratch + width;
    SumFourBytes(row, width - 3, fours);
    SumFourSums(fours, width - 15, sixteens);

    const Words words;
    const std::size_t lanes = hn::Lanes(words);
    const auto share = hn::Set(words, static_cast<std::uint16_t>(scalar::flatShare));
    scalar::flattenRow(row, width, 0, reach, flat);
    std::size_t x = reach;
    for (; x + reach + lanes <= width; x += lanes) {
        const std::size_t left = x - reach;
        const auto sum =
            addUp(hn::LoadU(words, sixteens + left), hn::LoadU(words, sixteens + left + 16),
                  hn::LoadU(words, sixteens + left + 32), loadWords(row + left + 48));
        const auto here = loadWords(row + x);
        const auto smooth =
            hn::ShiftLeft<2>(addUp(loadWords(row + x - 1), here, here, loadWords(row + x + 1)));
        const hn::RebindToSigned<Words> differences;
        hn::StoreU(hn::BitCast(differences, hn::Sub(smooth, hn::MulHigh(sum, share))), differences,
                   flat + x);
    }
    scalar::flattenRow(row, width, x, width, flat);
}

void SumRows(const std::array<const std::uint8_t *, 5> &rows, std::size_t width,
             std::uint16_t *sums)
{
    const Words words;
    const std::size_t lanes = hn::Lanes(words);
    std::size_t x = 0;
    for (; x + lanes <= width; x += lanes) {
        const auto outer = hn::Add(loadWords(rows[0] + x), loadWords(rows[4] + x));
        const auto inner = hn::Add(loadWords(rows[1] + x), loadWords(rows[3] + x));
        const auto middle = loadWords(rows[2] + x);
        hn::StoreU(addUp(outer, hn::ShiftLeft<2>(hn::Add(inner, middle)), middle, middle), words,
                   sums + x);
    }
    scalar::sumRows(rows, x, width, sums);
}

void SharpenRow(const std::uint8_t *row, const std::uint16_t *sums, std::size_t width, int quarters,
                std::uint8_t *out)
{
    const hn::RepartitionToWide<hn::RebindToSigned<Words>> wide;
    const hn::Half<Words> halfWords;
    const hn::Rebind<std::uint8_t, decltype(wide)> bytes;
    const std::size_t lanes = hn::Lanes(wide);
    const auto strength = hn::Set(wide, quarters);
    const auto rounding = hn::Set(wide, 512);
    std::size_t x = 0;
    for (; x + lanes <= width; x += lanes) {
        const auto load = [&](std::size_t offset)
                              HWY_ATTR { return hn::LoadU(halfWords, sums + x + offset); };
        const auto inner = hn::Add(load(1), load(3));
        const auto middle = load(2);
        const auto around =
            hn::Add(hn::Add(load(0), load(4)),
                    hn::Add(hn::ShiftLeft<2>(hn::Add(inner, middle)), hn::Add(middle, middle)));
        const auto here = hn::PromoteTo(wide, hn::LoadU(bytes, row + x));
        const auto distance = hn::Sub(hn::ShiftLeft<8>(here), hn::PromoteTo(wide, around));
        const auto value = hn::Add(hn::ShiftLeft<10>(here), hn::Mul(distance, strength));
        hn::StoreU(hn::DemoteTo(bytes, hn::ShiftRight<10>(hn::Add(value, rounding))), bytes,
                   out + x);
    }
    scalar::sharpenRow(row, sums, quarters, x, width, out);
}

#if HWY_TARGET == HWY_SCALAR
void AddSteps(const std::uint8_t *row, const std::uint8_t *below, std::size_t cells,
              std::uint64_t *sums)
{
    scalar::addSteps(row, below, cells, sums);
}
#else
void AddSteps(const std::uint8_t *row, const std::uint8_t *below, std::size_t cells,
              std::uint64_t *sums)
{
    const hn::FixedTag<std::uint8_t, cellPixels> bytes;
    const hn::FixedTag<std::uint64_t, 2> pair;
    const auto wanted = hn::VecFromMask(bytes, hn::FirstN(bytes, cellSteps));
    const auto sumOfSteps = [wanted](auto a, auto b) HWY_ATTR {
        const auto step = hn::Or(hn::SaturatedSub(a, b), hn::SaturatedSub(b, a));
        return hn::SumsOf8(hn::And(step, wanted));
    };
    for (std::size_t cell = 0; cell < cells; ++cell) {
        const auto here = hn::LoadU(bytes, row + cell * cellPixels);
        const auto across = sumOfSteps(here, hn::ShiftRightBytes<2>(bytes, here));
        const auto down = sumOfSteps(here, hn::LoadU(bytes, below + cell * cellPixels));
        const auto both = hn::Add(hn::InterleaveLower(pair, across, down),
                                  hn::InterleaveUpper(pair, across, down));
        std::uint64_t *sum = sums + 2 * cell;
        hn::StoreU(hn::Add(hn::LoadU(pair, sum), both), pair, sum);
    }
}
#endif

void AddMirrored(const float *row, const float *weights, std::size_t reach, std::size_t width,
                 float *sums)
{
    const hn::ScalableTag<float> floats;
    const std::size_t lanes = hn::Lanes(floats);
    std::size_t x = 0;
    for (; x + lanes <= width; x += lanes) {
        const float *here = row + x;
        auto sum = hn::Add(hn::LoadU(floats, sums + x),
                           hn::Mul(hn::Set(floats, weights[0]), hn::LoadU(floats, here)));
        for (std::size_t u = 1; u < reach; ++u) {
            const auto both = hn::Add(hn::LoadU(floats, here - u), hn::LoadU(floats, here + u));
            sum = hn::Add(sum, hn::Mul(hn::Set(floats, weights[u]), both));
        }
        hn::StoreU(sum, floats, sums + x);
    }
    scalar::addMirrored(row, weights, reach, x, width, sums);
}

} // namespace
} // namespace quillmark::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quillmark {

void meanOfTriples(const std::array<const std::uint8_t *, 3> &rows, std::size_t count,
                   std::uint8_t *out)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(MeanOfTriples))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(MeanOfTriples), HWY_CHOOSE_FALLBACK(MeanOfTriples)};
    bestKind(kinds)(rows, count, out);
}

void flattenRow(const std::uint8_t *row, std::size_t width, std::uint16_t *scratch,
                std::int16_t *flat)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(FlattenRow))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(FlattenRow), HWY_CHOOSE_FALLBACK(FlattenRow)};
    bestKind(kinds)(row, width, scratch, flat);
}

void sumRows(const std::array<const std::uint8_t *, 5> &rows, std::size_t width,
             std::uint16_t *sums)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(SumRows))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(SumRows), HWY_CHOOSE_FALLBACK(SumRows)};
    bestKind(kinds)(rows, width, sums);
}

void sharpenRow(const std::uint8_t *row, const std::uint16_t *sums, std::size_t width, int quarters,
                std::uint8_t *out)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(SharpenRow))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(SharpenRow), HWY_CHOOSE_FALLBACK(SharpenRow)};
    bestKind(kinds)(row, sums, width, quarters, out);
}

void addSteps(const std::uint8_t *row, const std::uint8_t *below, std::size_t cells,
              std::uint64_t *sums)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(AddSteps))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(AddSteps), HWY_CHOOSE_FALLBACK(AddSteps)};
    bestKind(kinds)(row, below, cells, sums);
}

void addMirrored(const float *row, const float *weights, std::size_t reach, std::size_t width,
                 float *sums)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(AddMirrored))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(AddMirrored), HWY_CHOOSE_FALLBACK(AddMirrored)};
    bestKind(kinds)(row, weights, reach, width, sums);
}

} // namespace quillmark
#endif
