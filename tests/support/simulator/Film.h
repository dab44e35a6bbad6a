// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/RowNoise.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillmark::test {

struct FilmOptions {
    double exposure = 1.0; ///< light, as a multiple of the right amount
    double contrast = 1.0; ///< 0 to 1: how far tones lie from mid-grey
    double grain = 0.0;    ///< standard deviation of the grain in mid-grey, 1 being white
    double clumps = 0.0;   ///< pixels: width of the grain's clumps where it is above about 2
    int dust = 0;          ///< specks and fibres on the frame
    int scratches = 0;     ///< along the film
    bool negative = false; ///< light and dark exchanged
};

/// What film and scanner make of an exposed row: contrast, negative, dust, scratches and
/// grain. Rows may come in any order and are the same each time; a copy serves one thread.
class Film
{
public:
    Film(int width, int height, std::uint64_t seed, const FilmOptions &options);

    /// Changes the row's tones (0 to 1) to what the scanner sees, not clamped.
    void developRow(int y, std::span<float> tone);

private:
    /// A bent hair of a radius, or a round speck where it has no length.
    struct Dirt {
        float x, y, bendX, bendY, endX, endY, radius, tone;
        float top, bottom;
    };
    struct Scratch {
        float x, lean, width, tone;
    };

    void addDirt(int y, std::span<float> tone) const;
    void addScratches(int y, std::span<float> tone) const;
    void addGrain(int y, std::span<float> tone);
    void addFineGrain(int y);
    void addClumps(int y);
    void fillWhiteNoise(int y, std::vector<float> &noise) const;

    int m_width;
    std::uint64_t m_seed;
    FilmOptions m_options;
    std::vector<Dirt> m_dirt;
    std::vector<Scratch> m_scratches;
    std::vector<float> m_grain;
    RowNoise m_clumps;
    RowNoise m_smallClumps;
    std::array<std::vector<float>, 3> m_noise;
    int m_noiseRow = -2;
};

} // namespace quillmark::test
