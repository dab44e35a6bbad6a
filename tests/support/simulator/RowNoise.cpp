// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/RowNoise.h"

#include "support/simulator/Random.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillmark::test {
namespace {

float fade(float t)
{
    return t * t * (3.0F - 2.0F * t);
}

} // namespace

RowNoise::RowNoise(std::uint64_t seed, float cell)
    : m_seed(hash64(seed)), m_cell(std::max(cell, 1.0F))
{}

float RowNoise::latticeValue(int column, int line) const
{
    const auto key = (static_cast<std::uint64_t>(static_cast<std::uint32_t>(line)) << 32) |
                     static_cast<std::uint32_t>(column);
    return 2.0F * unitFloat(hash64(m_seed ^ key)) - 1.0F;
}

void RowNoise::add(int y, float amplitude, std::span<float> row)
{
    if (row.empty()) {
        return;
    }
    const float line = static_cast<float>(y) / m_cell;
    const int upper = static_cast<int>(line);
    const float down = fade(line - static_cast<float>(upper));
    const auto columns = static_cast<std::size_t>(static_cast<float>(row.size()) / m_cell) + 3;
    m_lattice.resize(columns);
    for (std::size_t column = 0; column < columns; ++column) {
        const float above = latticeValue(static_cast<int>(column), upper);
        const float below = latticeValue(static_cast<int>(column), upper + 1);
        m_lattice[column] = amplitude * (above + (below - above) * down);
    }

    const float step = 1.0F / m_cell;
    std::size_t column = 0;
    float along = 0.0F;
    for (float &value : row) {
        value += m_lattice[column] + (m_lattice[column + 1] - m_lattice[column]) * fade(along);
        along += step;
        if (along >= 1.0F) {
            along -= 1.0F;
            ++column;
        }
    }
}

} // namespace quillmark::test
