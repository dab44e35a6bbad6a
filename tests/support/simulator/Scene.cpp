// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Scene.h"

#include "support/simulator/Random.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillmark::test {
namespace {

float smoothStep(float low, float high, float value)
{
    const float t = std::clamp((value - low) / (high - low), 0.0F, 1.0F);
    return t * t * (3.0F - 2.0F * t);
}

float blend(float from, float to, float share)
{
    return from + (to - from) * share;
}

std::uint64_t cellKey(std::uint64_t seed, int column, int line)
{
    return hash64(seed ^ (static_cast<std::uint64_t>(static_cast<std::uint32_t>(line)) << 32) ^
                  static_cast<std::uint32_t>(column));
}

} // namespace

Scene::Scene(int width, int height, std::uint64_t seed, Clutter clutter)
    : m_width(width),
      m_height(height),
      m_seed(hash64(seed)),
      m_clutter(clutter),
      m_hills(m_seed + 1, static_cast<float>(width) / 5.0F),
      m_light(m_seed + 2, static_cast<float>(width) / 3.0F),
      m_tint(m_seed + 3, static_cast<float>(width) / 4.0F),
      m_foliageMask(m_seed + 4, static_cast<float>(width) / 7.0F)
{
    Random random(m_seed);
    m_horizon = random.between(0.25F, 0.6F);
    m_sky = random.between(0.6F, 0.85F);
    m_ground = random.between(0.2F, 0.45F);

    // Leaves down to a few pixels: the finest octave sits where a small code's modules do.
    float cell = static_cast<float>(width) / 40.0F;
    for (std::uint64_t octave = 0; octave < 6 && cell > 2.0F; ++octave, cell /= 2.6F) {
        m_foliage.emplace_back(m_seed + 10 + octave, cell);
    }

    const auto size = static_cast<float>(std::min(width, height));
    for (int i = 0; i < 14; ++i) {
        m_blobs.push_back({random.between(0.0F, static_cast<float>(width)),
                           random.between(0.0F, static_cast<float>(height)),
                           size * random.between(0.02F, 0.2F), size * random.between(0.02F, 0.2F),
                           random.between(0.05F, 0.9F), random.between(0.02F, 0.5F)});
    }
    if (clutter == Clutter::buildings) {
        for (int i = 0; i < 5; ++i) {
            const float left = random.between(-0.05F, 0.9F) * static_cast<float>(width);
            const float top = random.between(0.1F, 0.6F) * static_cast<float>(height);
            m_boxes.push_back({left, top, left + size * random.between(0.1F, 0.35F),
                               static_cast<float>(height) * random.between(0.7F, 0.95F),
                               random.between(0.25F, 0.75F), size * random.between(0.012F, 0.05F),
                               random.bits()});
        }
    }
}

void Scene::paintRow(int y, std::span<float> tone, std::span<float> warmth)
{
    paintLandscape(y, tone, warmth);
    paintFoliage(y, tone);
    for (const Blob &blob : m_blobs) {
        paintBlob(blob, y, tone);
    }
    for (const Box &box : m_boxes) {
        paintBox(box, y, tone);
    }
    if (m_clutter == Clutter::tiles) {
        paintTiles(y, tone);
    } else if (m_clutter == Clutter::print) {
        paintPrint(y, tone);
    } else if (m_clutter == Clutter::checker) {
        paintChecker(y, tone);
    } else if (m_clutter == Clutter::mosaic) {
        paintMosaic(y, tone);
    }
    m_light.add(y, 0.08F, tone);
}

void Scene::paintLandscape(int y, std::span<float> tone, std::span<float> warmth)
{
    const float down = static_cast<float>(y) / static_cast<float>(m_height);
    // The horizon is a line over x: always the same row of the noise.
    m_scratch.assign(tone.size(), m_horizon);
    m_hills.add(0, 0.12F, m_scratch);
    std::ranges::fill(warmth, 0.0F);
    m_tint.add(y, 0.06F, warmth);
    for (std::size_t x = 0; x < tone.size(); ++x) {
        const float ground = smoothStep(-0.004F, 0.004F, down - m_scratch[x]);
        tone[x] = blend(m_sky + 0.15F * (0.3F - down), m_ground + 0.1F * down, ground);
        warmth[x] += blend(-0.05F, 0.03F, ground);
    }
}

void Scene::paintFoliage(int y, std::span<float> tone)
{
    m_mask.assign(tone.size(), 0.0F);
    m_foliageMask.add(y, 1.0F, m_mask);
    if (std::ranges::max(m_mask) < 0.1F) {
        return;
    }
    m_scratch.assign(tone.size(), 0.0F);
    float amplitude = 0.34F;
    for (RowNoise &octave : m_foliage) {
        octave.add(y, amplitude, m_scratch);
        amplitude *= 0.82F;
    }
    for (std::size_t x = 0; x < tone.size(); ++x) {
        const float leaf = std::clamp(0.3F + 0.6F * m_scratch[x], 0.02F, 0.95F);
        tone[x] = blend(tone[x], leaf, smoothStep(0.1F, 0.3F, m_mask[x]));
    }
}

void Scene::paintBlob(const Blob &blob, int y, std::span<float> tone) const
{
    const float across = (static_cast<float>(y) - blob.y) / blob.radiusY;
    if (std::abs(across) >= 1.0F) {
        return;
    }
    const auto limit = static_cast<float>(m_width);
    const auto left = static_cast<std::size_t>(std::clamp(blob.x - blob.radiusX, 0.0F, limit));
    const auto right = static_cast<std::size_t>(std::clamp(blob.x + blob.radiusX, 0.0F, limit));
    for (std::size_t x = left; x < right; ++x) {
        const float along = (static_cast<float>(x) - blob.x) / blob.radiusX;
        const float inside = 1.0F - (along * along + across * across);
        if (inside > 0.0F) {
            const float shaded = blob.tone + 0.15F * (across - along);
            tone[x] = blend(tone[x], shaded, smoothStep(0.0F, blob.softness, inside));
        }
    }
}

void Scene::paintBox(const Box &box, int y, std::span<float> tone) const
{
    const auto row = static_cast<float>(y);
    if (row < box.top || row >= box.bottom) {
        return;
    }
    const auto limit = static_cast<float>(m_width);
    const auto left = static_cast<std::size_t>(std::clamp(box.left, 0.0F, limit));
    const auto right = static_cast<std::size_t>(std::clamp(box.right, 0.0F, limit));
    const float down = (row - box.top) / box.windowStep;
    const int line = static_cast<int>(down);
    const bool betweenLines = down - static_cast<float>(line) > 0.55F;
    for (std::size_t x = left; x < right; ++x) {
        const float along = (static_cast<float>(x) - box.left) / box.windowStep;
        const int column = static_cast<int>(along);
        const bool window = !betweenLines && along - static_cast<float>(column) < 0.6F;
        const float pane = unitFloat(cellKey(box.seed, column, line)) < 0.25F ? 0.85F : 0.12F;
        tone[x] = window ? pane : box.tone;
    }
}

void Scene::paintTiles(int y, std::span<float> tone) const
{
    const float step = static_cast<float>(m_width) / 45.0F;
    const float joint = 0.08F;
    const float down = static_cast<float>(y) / step;
    const int line = static_cast<int>(down);
    for (std::size_t x = 0; x < tone.size(); ++x) {
        const float along = static_cast<float>(x) / step;
        const int column = static_cast<int>(along);
        const bool inJoint =
            down - static_cast<float>(line) < joint || along - static_cast<float>(column) < joint;
        const float shade = unitFloat(cellKey(m_seed, column, line));
        const float tile = shade < 0.35F ? 0.1F : 0.75F + 0.15F * shade;
        tone[x] = blend(tone[x], inJoint ? 0.45F : tile, 0.9F);
    }
}

void Scene::paintPrint(int y, std::span<float> tone) const
{
    const float em = static_cast<float>(m_width) / 110.0F;
    const float down = static_cast<float>(y) / (1.6F * em);
    const int line = static_cast<int>(down);
    const bool between = down - static_cast<float>(line) > 0.62F;
    const float frameSide = 9.0F * em;
    for (std::size_t x = 0; x < tone.size(); ++x) {
        // Words of stems: narrow dark strokes with gaps, some letters missing.
        const float along = static_cast<float>(x) / (0.22F * em);
        const int stroke = static_cast<int>(along);
        const bool letter = unitFloat(cellKey(m_seed + 1, stroke / 4, line)) < 0.82F;
        const bool ink = !between && letter && unitFloat(cellKey(m_seed, stroke, line)) < 0.5F;
        float value = ink ? 0.12F : 0.88F;

        // Squares in squares at places: a corner mark without its two companions.
        const int column = static_cast<int>(static_cast<float>(x) / (3.0F * frameSide));
        const int band = static_cast<int>(static_cast<float>(y) / (3.0F * frameSide));
        if ((column + band) % 3 == 0) {
            const float localX =
                static_cast<float>(x) - (static_cast<float>(column) + 0.5F) * 3.0F * frameSide;
            const float localY =
                static_cast<float>(y) - (static_cast<float>(band) + 0.5F) * 3.0F * frameSide;
            const float ring = std::max(std::abs(localX), std::abs(localY)) / frameSide;
            if (ring < 0.6F) {
                value = ring < 0.214F || (ring > 0.357F && ring < 0.5F) ? 0.1F : 0.9F;
            }
        }
        tone[x] = value;
    }
}

void Scene::paintChecker(int y, std::span<float> tone) const
{
    // Boards a twelfth of the frame wide, with 6 to 30 fields.
    const float board = static_cast<float>(m_width) / 12.0F;
    const int line = static_cast<int>(static_cast<float>(y) / board);
    for (std::size_t x = 0; x < tone.size(); ++x) {
        const int column = static_cast<int>(static_cast<float>(x) / board);
        const std::uint64_t key = cellKey(m_seed + 5, column, line);
        const float field = board / static_cast<float>(6 + key % 25);
        const int across = static_cast<int>(static_cast<float>(x) / field);
        const int down = static_cast<int>(static_cast<float>(y) / field);
        tone[x] = (across + down) % 2 == 0 ? 0.12F : 0.88F;
    }
}

void Scene::paintMosaic(int y, std::span<float> tone) const
{
    // Patches with cells of 1/700 to 1/200 of the width, and plain ground between them. Every
    // third block of 9 cells holds a square in a square: what marks a code's corners.
    const float patch = static_cast<float>(m_width) / 5.0F;
    const int patchLine = static_cast<int>(static_cast<float>(y) / patch);
    for (std::size_t x = 0; x < tone.size(); ++x) {
        const int patchColumn = static_cast<int>(static_cast<float>(x) / patch);
        const std::uint64_t key = cellKey(m_seed + 6, patchColumn, patchLine);
        if (key % 2 == 0) {
            continue;
        }
        const float share = unitFloat(hash64(key));
        const float cell = static_cast<float>(m_width) / (200.0F + 500.0F * share);
        const int column = static_cast<int>(static_cast<float>(x) / cell);
        const int line = static_cast<int>(static_cast<float>(y) / cell);
        bool dark = unitFloat(cellKey(key, column, line)) < 0.5F;
        if (cellKey(key + 1, column / 9, line / 9) % 3 == 0) {
            const int ring = std::max(std::abs(column % 9 - 4), std::abs(line % 9 - 4));
            dark = ring <= 1 || ring == 3;
        }
        tone[x] = dark ? 0.1F : 0.9F;
    }
}

} // namespace quillmark::test
