// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SampleKernels.h"

#include "detection/KernelTarget.h"
#include "detection/SampleScalar.h"

#include <algorithm>
#include <cmath>

// Has this file compiled once for each kind of vectors.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "detection/SampleKernels.cpp"
#include <hwy/foreach_target.h>
// Needs the above before it.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace quillmark::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR
using scalar::applyLevels;
using scalar::lumaOfRgb;
using scalar::swapBytes;
#else
namespace hn = hwy::HWY_NAMESPACE;

/// The weighted sum of LumaOutput in 16.16 fixed point, rounded but not shifted.
template <typename D, typename V>
V weighted(D d, V red, V green, V blue)
{
    const V redPart = hn::Mul(red, hn::Set(d, 19595U));
    const V greenPart = hn::Mul(green, hn::Set(d, 38470U));
    const V bluePart = hn::Mul(blue, hn::Set(d, 7471U));
    return hn::Add(hn::Add(redPart, greenPart), hn::Add(bluePart, hn::Set(d, 32768U)));
}

/// The two samples in each half of a double lane are taken apart by masking and shifting,
/// which needs no shuffling and keeps their order.
template <typename D, typename V>
V luma16(D d, V red, V green, V blue)
{
    const hn::Repartition<std::uint32_t, D> wide;
    const auto low = hn::Set(wide, 0xFFFFU);
    const auto r = hn::BitCast(wide, red);
    const auto g = hn::BitCast(wide, green);
    const auto b = hn::BitCast(wide, blue);
    const auto even = weighted(wide, hn::And(r, low), hn::And(g, low), hn::And(b, low));
    const auto odd =
        weighted(wide, hn::ShiftRight<16>(r), hn::ShiftRight<16>(g), hn::ShiftRight<16>(b));
    return hn::BitCast(d, hn::Or(hn::ShiftRight<16>(even), hn::AndNot(low, odd)));
}

template <typename D, typename V>
V luma8(D d, V red, V green, V blue)
{
    const hn::Repartition<std::uint16_t, D> wide;
    const auto low = hn::Set(wide, std::uint16_t{0xFF});
    const auto r = hn::BitCast(wide, red);
    const auto g = hn::BitCast(wide, green);
    const auto b = hn::BitCast(wide, blue);
    const auto even = luma16(wide, hn::And(r, low), hn::And(g, low), hn::And(b, low));
    const auto odd = luma16(wide, hn::ShiftRight<8>(r), hn::ShiftRight<8>(g), hn::ShiftRight<8>(b));
    return hn::BitCast(d, hn::Or(even, hn::ShiftLeft<8>(odd)));
}

template <typename Sample>
void lumaOfRgb(const Sample *samples, int channels, int count, Sample *out)
{
    const hn::ScalableTag<Sample> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    int done = 0;
    for (; count - done >= lanes; done += lanes, samples += channels * lanes) {
        hn::Vec<decltype(d)> red;
        hn::Vec<decltype(d)> green;
        hn::Vec<decltype(d)> blue;
        if (channels == 3) {
            hn::LoadInterleaved3(d, samples, red, green, blue);
        } else {
            hn::Vec<decltype(d)> other;
            hn::LoadInterleaved4(d, samples, red, green, blue, other);
        }
        if constexpr (sizeof(Sample) == 1) {
            hn::StoreU(luma8(d, red, green, blue), d, out + done);
        } else {
            hn::StoreU(luma16(d, red, green, blue), d, out + done);
        }
    }
    scalar::lumaOfRgb(samples, channels, count - done, out + done);
}

void applyLevels(const WholeLevels &levels, const std::uint16_t *samples, int count,
                 std::uint8_t *out)
{
    const hn::ScalableTag<std::uint16_t> d;
    const hn::Repartition<std::uint32_t, decltype(d)> wide;
    const hn::RebindToSigned<decltype(d)> whole;
    const hn::Rebind<std::uint8_t, decltype(d)> narrow;
    const int lanes = static_cast<int>(hn::Lanes(d));
    const auto black = hn::Set(d, static_cast<std::uint16_t>(levels.black));
    const auto white = hn::Set(d, static_cast<std::uint16_t>(levels.white));
    const auto low = hn::Set(wide, 0xFFFFU);
    const auto half = hn::Set(wide, 32768U);
    const auto scale = hn::Set(wide, levels.scale);
    int done = 0;
    for (; count - done >= lanes; done += lanes) {
        const auto bounded = hn::Min(hn::Max(hn::LoadU(d, samples + done), black), white);
        const auto value = hn::BitCast(wide, hn::Sub(bounded, black));
        const auto even = hn::Add(hn::Mul(hn::And(value, low), scale), half);
        const auto odd = hn::Add(hn::Mul(hn::ShiftRight<16>(value), scale), half);
        const auto both = hn::Or(hn::ShiftRight<16>(even), hn::AndNot(low, odd));
        hn::StoreU(hn::DemoteTo(narrow, hn::BitCast(whole, both)), narrow, out + done);
    }
    scalar::applyLevels(levels, samples + done, count - done, out + done);
}

void swapBytes(std::uint16_t *samples, std::size_t count)
{
    const hn::ScalableTag<std::uint16_t> d;
    const std::size_t lanes = hn::Lanes(d);
    std::size_t done = 0;
    for (; count - done >= lanes; done += lanes) {
        const auto value = hn::LoadU(d, samples + done);
        hn::StoreU(hn::Or(hn::ShiftLeft<8>(value), hn::ShiftRight<8>(value)), d, samples + done);
    }
    scalar::swapBytes(samples + done, count - done);
}

#endif

// One name each, which is what can be chosen.

void lumaOfRgb8(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    HWY_NAMESPACE::lumaOfRgb(samples, channels, count, out);
}

void lumaOfRgb16(const std::uint16_t *samples, int channels, int count, std::uint16_t *out)
{
    HWY_NAMESPACE::lumaOfRgb(samples, channels, count, out);
}

void applyWholeLevels(const WholeLevels &levels, const std::uint16_t *samples, int count,
                      std::uint8_t *out)
{
    HWY_NAMESPACE::applyLevels(levels, samples, count, out);
}

void swapPairs(std::uint16_t *samples, std::size_t count)
{
    HWY_NAMESPACE::swapBytes(samples, count);
}

} // namespace quillmark::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace quillmark {
WholeLevels::WholeLevels(const Levels &levels)
    : black(static_cast<std::uint32_t>(std::lround(levels.black))),
      white(static_cast<std::uint32_t>(std::lround(levels.white)))
{
    const std::uint32_t range = std::max(white - black, 1U);
    scale = ((255U << 16U) + range / 2) / range;
}

void lumaOfRgb(const std::uint8_t *samples, int channels, int count, std::uint8_t *out)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(lumaOfRgb8))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(lumaOfRgb8), HWY_CHOOSE_FALLBACK(lumaOfRgb8)};
    bestKind(kinds)(samples, channels, count, out);
}

void lumaOfRgb(const std::uint16_t *samples, int channels, int count, std::uint16_t *out)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(lumaOfRgb16))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(lumaOfRgb16), HWY_CHOOSE_FALLBACK(lumaOfRgb16)};
    bestKind(kinds)(samples, channels, count, out);
}

void applyLevels(const WholeLevels &levels, const std::uint16_t *samples, int count,
                 std::uint8_t *out)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(applyWholeLevels))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(applyWholeLevels), HWY_CHOOSE_FALLBACK(applyWholeLevels)};
    bestKind(kinds)(levels, samples, count, out);
}

void swapBytes(std::uint16_t *samples, std::size_t count)
{
    static constexpr KernelKinds<decltype(&HWY_STATIC_DISPATCH(swapPairs))> kinds{
        nullptr, HWY_CHOOSE_TARGET_LIST(swapPairs), HWY_CHOOSE_FALLBACK(swapPairs)};
    bestKind(kinds)(samples, count);
}

} // namespace quillmark
#endif
