// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace quillmark::test {

/// Smooth noise between -1 and 1 whose features are about `cell` pixels wide: random values
/// on a square lattice, blended between its points ("value noise"). Made row by row, so
/// that a frame of any size costs the memory of one row. An object serves one thread.
class RowNoise
{
public:
    RowNoise(std::uint64_t seed, float cell);

    /// Adds amplitude times the noise of row y to the row.
    void add(int y, float amplitude, std::span<float> row);

private:
    float latticeValue(int column, int line) const;

    std::uint64_t m_seed;
    float m_cell;
    std::vector<float> m_lattice;
};

} // namespace quillmark::test
