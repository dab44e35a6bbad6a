// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/RowNoise.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quillmark::test {

/// What stands in a scene besides landscape.
enum class Clutter {
    none,
    buildings, ///< boxes with rows of windows
    tiles,     ///< a wall of regular tiles, a few of them dark
    print,     ///< pages of words in lines, and framed squares
    checker,   ///< boards of fields that take turns, in several sizes
    mosaic,    ///< random black and white cells, and squares in squares strewn among them
};

/// Something photograph-like to lay a card into: sky and ground, soft light, foliage at
/// many scales, shapes with edges. Tones are 0 (black) to 1 (white), as shown on a screen.
/// Painted row by row in any order; a copy serves one thread.
class Scene
{
public:
    Scene(int width, int height, std::uint64_t seed, Clutter clutter);

    /// Fills the row's tones, and its warmth: above 0 redder, below 0 bluer.
    void paintRow(int y, std::span<float> tone, std::span<float> warmth);

private:
    struct Blob {
        float x, y, radiusX, radiusY, tone, softness;
    };
    struct Box {
        float left, top, right, bottom, tone, windowStep;
        std::uint64_t seed;
    };

    void paintLandscape(int y, std::span<float> tone, std::span<float> warmth);
    void paintFoliage(int y, std::span<float> tone);
    void paintBlob(const Blob &blob, int y, std::span<float> tone) const;
    void paintBox(const Box &box, int y, std::span<float> tone) const;
    void paintTiles(int y, std::span<float> tone) const;
    void paintPrint(int y, std::span<float> tone) const;
    void paintChecker(int y, std::span<float> tone) const;
    void paintMosaic(int y, std::span<float> tone) const;

    int m_width;
    int m_height;
    std::uint64_t m_seed;
    Clutter m_clutter;
    float m_horizon;
    float m_sky;
    float m_ground;
    RowNoise m_hills;
    RowNoise m_light;
    RowNoise m_tint;
    RowNoise m_foliageMask;
    std::vector<RowNoise> m_foliage;
    std::vector<Blob> m_blobs;
    std::vector<Box> m_boxes;
    std::vector<float> m_scratch;
    std::vector<float> m_mask;
};

} // namespace quillmark::test
