// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/Geometry.h"
#include "support/simulator/RowNoise.h"

#include <cstdint>
#include <span>
#include <vector>

namespace quillmark::test {

/// A lamp's reflection on a shiny card.
struct Glare {
    Point middle; ///< pixels
    double radiusX = 1;
    double radiusY = 1;
    double strength = 0; ///< light that it adds in its middle; 1 drowns everything
};

struct LightOptions {
    double unevenness = 0.13; ///< how far the light is above and below its mean
    /// Of one side of the frame to the other, brightest to darkest: light falls off along a line.
    double falloff = 0;
    double falloffTowards = 0; ///< degrees: where it is darkest
    std::vector<Glare> glares;
};

/// The light that falls on everything, the card included. Rows may come in any order; a copy
/// serves one thread.
class Light
{
public:
    Light(int width, int height, std::uint64_t seed, LightOptions options);

    void shadeRow(int y, std::span<float> tone);

private:
    void addGlare(const Glare &glare, int y, std::span<float> tone) const;

    double m_width;
    double m_height;
    LightOptions m_options;
    RowNoise m_noise;
    std::vector<float> m_light;
};

} // namespace quillmark::test
