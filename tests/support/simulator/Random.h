// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace quillmark::test {

/// The SplitMix64 step (Steele, Lea, Flood: "Fast splittable pseudorandom number
/// generators", 2014): every bit of the result depends on every bit of the key.
constexpr std::uint64_t hash64(std::uint64_t key)
{
    key += 0x9E3779B97F4A7C15U;
    key = (key ^ (key >> 30)) * 0xBF58476D1CE4E5B9U;
    key = (key ^ (key >> 27)) * 0x94D049BB133111EBU;
    return key ^ (key >> 31);
}

/// 0 (inclusive) to 1 (exclusive).
constexpr float unitFloat(std::uint64_t bits)
{
    return static_cast<float>(bits >> 40) * 0x1p-24F;
}

/// Random numbers that are the same on every platform, unlike the standard distributions.
class Random
{
public:
    explicit constexpr Random(std::uint64_t seed) : m_state(hash64(seed)) {}

    constexpr std::uint64_t bits() { return hash64(m_state++); }
    constexpr float unit() { return unitFloat(bits()); }
    constexpr float between(float low, float high) { return low + (high - low) * unit(); }
    constexpr int below(int limit)
    {
        return static_cast<int>(bits() % static_cast<std::uint64_t>(limit));
    }
    constexpr bool chance(float probability) { return unit() < probability; }

private:
    std::uint64_t m_state;
};

} // namespace quillmark::test
