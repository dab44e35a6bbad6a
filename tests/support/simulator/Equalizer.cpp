// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Equalizer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace quillmark::test {
namespace {

constexpr int reach = 2; // modules to each side
constexpr int across = 2 * reach + 1;
constexpr std::size_t neighbours = across * across;
constexpr std::size_t centre = neighbours / 2;
constexpr std::size_t unknowns = neighbours + 1; // and a constant
constexpr int surroundings = 6;                  // modules to each side

using Weights = std::array<double, unknowns>;

/// The bits around a module, light being 1 and dark -1, and 1 for the constant. Around the
/// code it is light.
Weights signsAround(const QrMatrix &bits, int column, int row)
{
    Weights signs{};
    for (std::size_t i = 0; i < neighbours; ++i) {
        const int x = column + static_cast<int>(i % across) - reach;
        const int y = row + static_cast<int>(i / across) - reach;
        const bool inside = x >= 0 && y >= 0 && x < bits.size && y < bits.size;
        signs[i] = inside && bits.isDark(x, y) ? -1 : 1;
    }
    signs[neighbours] = 1;
    return signs;
}

double product(const Weights &one, const Weights &other)
{
    double sum = 0;
    for (std::size_t i = 0; i < unknowns; ++i) {
        sum += one[i] * other[i];
    }
    return sum;
}

/// Gaussian elimination of a symmetric, positive system.
Weights solve(std::array<Weights, unknowns> matrix, Weights right)
{
    for (std::size_t i = 0; i < unknowns; ++i) {
        for (std::size_t row = i + 1; row < unknowns; ++row) {
            const double factor = matrix[row][i] / matrix[i][i];
            for (std::size_t column = i; column < unknowns; ++column) {
                matrix[row][column] -= factor * matrix[i][column];
            }
            right[row] -= factor * right[i];
        }
    }
    for (std::size_t i = unknowns; i-- > 0;) {
        for (std::size_t column = i + 1; column < unknowns; ++column) {
            right[i] -= matrix[i][column] * right[column];
        }
        right[i] /= matrix[i][i];
    }
    return right;
}

Weights fitWeights(const ModuleGrid &tones, const QrMatrix &bits)
{
    std::array<Weights, unknowns> matrix{};
    Weights right{};
    for (int row = 0; row < bits.size; ++row) {
        for (int column = 0; column < bits.size; ++column) {
            const Weights signs = signsAround(bits, column, row);
            for (std::size_t i = 0; i < unknowns; ++i) {
                for (std::size_t j = 0; j < unknowns; ++j) {
                    matrix[i][j] += signs[i] * signs[j];
                }
                right[i] += signs[i] * static_cast<double>(tones.at(column, row));
            }
        }
    }
    for (std::size_t i = 0; i < unknowns; ++i) {
        matrix[i][i] += 1; // keeps the system from being singular
    }
    return solve(matrix, right);
}

ModuleGrid squared(const ModuleGrid &grid)
{
    ModuleGrid result(grid.size());
    for (int row = 0; row < grid.size(); ++row) {
        for (int column = 0; column < grid.size(); ++column) {
            result.set(column, row, grid.at(column, row) * grid.at(column, row));
        }
    }
    return result;
}

ModuleGrid normalized(const ModuleGrid &tones)
{
    const ModuleGrid means = tones.localMeans(surroundings);
    const ModuleGrid squares = squared(tones).localMeans(surroundings);
    ModuleGrid result(tones.size());
    for (int row = 0; row < tones.size(); ++row) {
        for (int column = 0; column < tones.size(); ++column) {
            const float mean = means.at(column, row);
            const float variance = squares.at(column, row) - mean * mean;
            result.set(column, row,
                       (tones.at(column, row) - mean) / std::sqrt(std::max(variance, 0.25F)));
        }
    }
    return result;
}

} // namespace

Equalizer::Equalizer(const ModuleGrid &tones) : m_tones(normalized(tones)) {}

QrMatrix Equalizer::improve(const QrMatrix &bits) const
{
    Weights others = fitWeights(m_tones, bits);
    others[centre] = 0;
    QrMatrix better = bits;
    for (int row = 0; row < bits.size; ++row) {
        for (int column = 0; column < bits.size; ++column) {
            if (!bits.isFixed(column, row)) {
                const double left = static_cast<double>(m_tones.at(column, row)) -
                                    product(others, signsAround(bits, column, row));
                better.cellAt(column, row) = left < 0 ? 1 : 0;
            }
        }
    }
    return better;
}

} // namespace quillmark::test
