// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Film.h"

#include "support/simulator/Random.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmark::test {
namespace {

constexpr double fineClump = 2.0; // pixels

/// The sum of a hash's eight bytes is close to normal; centred, its deviation is
/// sqrt(8 (256^2 - 1) / 12), the variance of eight discrete uniform values.
float normal(std::uint64_t bits)
{
    // Bytes are added in pairs, then in fours, within the word.
    bits = (bits & 0x00FF00FF00FF00FFU) + ((bits >> 8) & 0x00FF00FF00FF00FFU);
    const std::uint64_t sum = (bits * 0x0001000100010001U) >> 48;
    return (static_cast<float>(sum) - 1020.0F) / 209.02F;
}

} // namespace

Film::Film(int width, int height, std::uint64_t seed, const FilmOptions &options)
    : m_width(width),
      m_seed(hash64(seed ^ 0xF11FU)),
      m_options(options),
      m_clumps(m_seed + 1, static_cast<float>(options.clumps)),
      m_smallClumps(m_seed + 2, static_cast<float>(options.clumps / 1.7))
{
    Random random(m_seed);
    const auto columns = static_cast<float>(width);
    const auto rows = static_cast<float>(height);
    const float unit = std::max(columns, rows) / 1500.0F;
    for (int i = 0; i < options.dust; ++i) {
        Dirt dirt{};
        dirt.x = random.between(0.0F, columns);
        dirt.y = random.between(0.0F, rows);
        dirt.radius = unit * random.between(0.3F, 1.4F);
        dirt.tone = random.chance(0.7F) ? 0.97F : 0.04F;
        const float length = random.chance(0.4F) ? unit * random.between(8.0F, 60.0F) : 0.0F;
        dirt.bendX = dirt.x + length * random.between(-0.5F, 0.5F);
        dirt.bendY = dirt.y + length * random.between(-0.5F, 0.5F);
        dirt.endX = dirt.x + length * random.between(-1.0F, 1.0F);
        dirt.endY = dirt.y + length * random.between(-1.0F, 1.0F);
        dirt.top = std::min({dirt.y, dirt.bendY, dirt.endY}) - dirt.radius - 1.0F;
        dirt.bottom = std::max({dirt.y, dirt.bendY, dirt.endY}) + dirt.radius + 1.0F;
        m_dirt.push_back(dirt);
    }
    for (int i = 0; i < options.scratches; ++i) {
        m_scratches.push_back(
            {random.between(0.0F, columns), random.between(-0.01F, 0.01F) * columns / rows,
             unit * random.between(0.2F, 0.7F), random.chance(0.6F) ? 0.95F : 0.08F});
    }
}

void Film::developRow(int y, std::span<float> tone)
{
    const auto contrast = static_cast<float>(m_options.contrast);
    const auto exposure = static_cast<float>(m_options.exposure);
    const float gain = m_options.negative ? -contrast : contrast;
    for (float &value : tone) {
        value = 0.5F + gain * (std::clamp(value * exposure, 0.0F, 1.0F) - 0.5F);
    }
    addDirt(y, tone);
    addScratches(y, tone);
    if (m_options.grain > 0) {
        addGrain(y, tone);
    }
}

void Film::addDirt(int y, std::span<float> tone) const
{
    const float row = static_cast<float>(y) + 0.5F;
    for (const Dirt &dirt : m_dirt) {
        if (row < dirt.top || row > dirt.bottom) {
            continue;
        }
        const float length = std::hypot(dirt.bendX - dirt.x, dirt.bendY - dirt.y) +
                             std::hypot(dirt.endX - dirt.bendX, dirt.endY - dirt.bendY);
        const int pieces = static_cast<int>(std::ceil(length / dirt.radius));
        for (int i = 0; i <= pieces; ++i) {
            // A quadratic Bézier curve, as a string of discs.
            const float t = pieces == 0 ? 0.0F : static_cast<float>(i) / static_cast<float>(pieces);
            const float s = 1.0F - t;
            const float x = s * s * dirt.x + 2 * s * t * dirt.bendX + t * t * dirt.endX;
            const float away = s * s * dirt.y + 2 * s * t * dirt.bendY + t * t * dirt.endY - row;
            const float reach = dirt.radius + 1.0F;
            if (std::abs(away) > reach) {
                continue;
            }
            const int left = std::max(0, static_cast<int>(x - reach));
            const int right = std::min(m_width - 1, static_cast<int>(x + reach));
            for (int column = left; column <= right; ++column) {
                const float along = static_cast<float>(column) + 0.5F - x;
                const float distance = std::sqrt(along * along + away * away);
                const float covered = std::clamp(dirt.radius + 0.5F - distance, 0.0F, 1.0F);
                float &value = tone[static_cast<std::size_t>(column)];
                value += (dirt.tone - value) * covered;
            }
        }
    }
}

void Film::addScratches(int y, std::span<float> tone) const
{
    for (const Scratch &scratch : m_scratches) {
        const float x = scratch.x + scratch.lean * static_cast<float>(y);
        const int left = std::max(0, static_cast<int>(x - scratch.width - 1.0F));
        const int right = std::min(m_width - 1, static_cast<int>(x + scratch.width + 1.0F));
        for (int column = left; column <= right; ++column) {
            const float distance = std::abs(static_cast<float>(column) + 0.5F - x);
            const float covered = std::clamp(scratch.width + 0.5F - distance, 0.0F, 0.8F);
            float &value = tone[static_cast<std::size_t>(column)];
            value += (scratch.tone - value) * covered;
        }
    }
}

void Film::addGrain(int y, std::span<float> tone)
{
    m_grain.assign(tone.size(), 0.0F);
    if (m_options.clumps > fineClump) {
        addClumps(y);
    } else {
        addFineGrain(y);
    }
    const auto amplitude = static_cast<float>(m_options.grain);
    for (std::size_t x = 0; x < tone.size(); ++x) {
        const float shade = std::clamp(tone[x], 0.0F, 1.0F);
        tone[x] += amplitude * m_grain[x] * (0.4F + 2.4F * shade * (1.0F - shade));
    }
}

/// Clumps of two sizes, with the deviation 1.
void Film::addClumps(int y)
{
    // Noise of a deviation of 1/sqrt(3) at the points of the lattice; the blend between them
    // leaves 26/35 of its variance each way.
    constexpr float deviation = 0.57735F * 26.0F / 35.0F;
    constexpr float half = 0.70711F / deviation;
    m_clumps.add(y, half, m_grain);
    m_smallClumps.add(y, half, m_grain);
}

/// Clumps a little wider than a pixel: white noise under a 1-2-1 mask both ways, whose
/// deviation is 3/8 of what went in.
void Film::addFineGrain(int y)
{
    if (m_noiseRow == y - 1) {
        std::rotate(m_noise.begin(), m_noise.begin() + 1, m_noise.end());
        fillWhiteNoise(y + 1, m_noise[2]);
    } else {
        for (int i = 0; i < 3; ++i) {
            fillWhiteNoise(y - 1 + i, m_noise[static_cast<std::size_t>(i)]);
        }
    }
    m_noiseRow = y;
    constexpr float scale = 1.0F / 16.0F / (3.0F / 8.0F);
    for (std::size_t x = 0; x < m_grain.size(); ++x) {
        m_grain[x] += scale * (m_noise[0][x] + 2.0F * m_noise[1][x] + m_noise[2][x]);
    }
}

/// One row of noise, already under the mask along the row.
void Film::fillWhiteNoise(int y, std::vector<float> &noise) const
{
    const auto columns = static_cast<std::size_t>(m_width);
    noise.resize(columns);
    const std::uint64_t key =
        hash64(m_seed ^ static_cast<std::uint64_t>(static_cast<std::uint32_t>(y)));
    float before = normal(hash64(key));
    float here = normal(hash64(key + 1));
    for (std::size_t x = 0; x < columns; ++x) {
        const float after = normal(hash64(key + x + 2));
        noise[x] = before + 2.0F * here + after;
        before = std::exchange(here, after);
    }
}

} // namespace quillmark::test
