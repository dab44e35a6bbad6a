// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ModuleEqualiser.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillmark {
namespace {

constexpr int reachHalves = 3;          // taps to each side, half a module apart
constexpr int margin = 2 * reachHalves; // half modules sampled beyond the symbol's edge
constexpr int tapsAlong = 2 * reachHalves + 1;
constexpr int taps = tapsAlong * tapsAlong;
constexpr int inputs = taps + 3; // and means of two neighbourhoods, and one
constexpr float knownWeight = 2; // of a module that is known beside one that is held
constexpr float ridge = 0.02F;

/// Sums over rectangles of values in constant time.
class AreaSums
{
public:
    template <typename Value>
    AreaSums(int side, const Value &value)
        : m_side(side),
          m_sums(static_cast<std::size_t>(side + 1) * static_cast<std::size_t>(side + 1))
    {
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) {
                sum(column + 1, row + 1) = value(column, row) + sum(column, row + 1) +
                                           sum(column + 1, row) - sum(column, row);
            }
        }
    }

    /// The mean over the part of a square that lies inside.
    double mean(int column, int row, int reach) const
    {
        const int left = std::max(column - reach, 0);
        const int top = std::max(row - reach, 0);
        const int right = std::min(column + reach + 1, m_side);
        const int bottom = std::min(row + reach + 1, m_side);
        return (sum(right, bottom) - sum(left, bottom) - sum(right, top) + sum(left, top)) /
               ((right - left) * (bottom - top));
    }

private:
    double &sum(int column, int row)
    {
        return m_sums[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_side + 1) +
                      static_cast<std::size_t>(column)];
    }
    double sum(int column, int row) const
    {
        return m_sums[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_side + 1) +
                      static_cast<std::size_t>(column)];
    }

    int m_side;
    std::vector<double> m_sums;
};

// The number of columns is known too, but where the compiler knows it, it warns of loops in the
// matrix library that never run.
using Rows = Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

/// The mean light around a place of the grid, as far out as a third of a module.
float lightAt(const RegionImage &picture, const SymbolGrid &grid, double column, double row)
{
    constexpr double spread = 1.0 / 6; // modules from sample to sample
    const PixelPoint middle = grid.at(column, row);
    const PixelPoint right = grid.at(column + spread, row);
    const PixelPoint down = grid.at(column, row + spread);
    const LocalFrame around{middle,
                            {right.x - middle.x, right.y - middle.y},
                            {down.x - middle.x, down.y - middle.y},
                            0};
    float sum = 0;
    for (int v = -1; v <= 1; ++v) {
        for (int u = -1; u <= 1; ++u) {
            sum += picture.at(around.at(u, v));
        }
    }
    return sum / 9;
}

/// The weights of the inputs whose sums come nearest to the targets, by ridge regression.
Eigen::VectorXf bestWeights(const Rows &input, const Eigen::VectorXf &target,
                            const Eigen::VectorXf &weight)
{
    const Rows weighted = weight.asDiagonal() * input;
    Eigen::MatrixXf normal = weighted.transpose() * input;
    normal.diagonal().array() += ridge * static_cast<float>(input.rows());
    return normal.ldlt().solve(weighted.transpose() * target);
}

} // namespace

ModuleEqualiser::ModuleEqualiser(const RegionImage &picture, const SymbolGrid &grid,
                                 const SymbolPattern &pattern)
    : m_pattern(pattern),
      m_side(grid.side()),
      m_lattice(2 * m_side + 2 * margin + 1),
      m_samples(static_cast<std::size_t>(m_lattice) * static_cast<std::size_t>(m_lattice))
{
    for (int row = 0; row < m_lattice; ++row) {
        for (int column = 0; column < m_lattice; ++column) {
            m_samples[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_lattice) +
                      static_cast<std::size_t>(column)] =
                lightAt(picture, grid, (column - margin) * 0.5, (row - margin) * 0.5);
        }
    }
    flatten();
}

float ModuleEqualiser::sample(int halfColumn, int halfRow) const
{
    return m_samples[static_cast<std::size_t>(halfRow + margin) *
                         static_cast<std::size_t>(m_lattice) +
                     static_cast<std::size_t>(halfColumn + margin)];
}

/// Takes out what light does over many modules: the mean, and the contrast.
void ModuleEqualiser::flatten()
{
    constexpr int reach = 18; // half modules
    const auto value = [this](int column, int row) -> double {
        return m_samples[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_lattice) +
                         static_cast<std::size_t>(column)];
    };
    const AreaSums sums(m_lattice, value);
    const AreaSums squares(
        m_lattice, [&](int column, int row) { return value(column, row) * value(column, row); });
    std::vector<float> flat(m_samples.size());
    for (int row = 0; row < m_lattice; ++row) {
        for (int column = 0; column < m_lattice; ++column) {
            const double mean = sums.mean(column, row, reach);
            const double spread =
                std::sqrt(std::max(squares.mean(column, row, reach) - mean * mean, 1.0));
            flat[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_lattice) +
                 static_cast<std::size_t>(column)] =
                static_cast<float>((mean - value(column, row)) / spread);
        }
    }
    m_samples = std::move(flat);
}

ModuleLevels plainLevels(const RegionImage &picture, const SymbolGrid &grid, int reach)
{
    const int side = grid.side();
    std::vector<float> light;
    light.reserve(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            light.push_back(lightAt(picture, grid, column + 0.5, row + 0.5));
        }
    }
    const auto value = [&](int column, int row) -> double {
        return light[static_cast<std::size_t>(row) * static_cast<std::size_t>(side) +
                     static_cast<std::size_t>(column)];
    };
    const AreaSums sums(side, value);
    const AreaSums squares(
        side, [&](int column, int row) { return value(column, row) * value(column, row); });
    const double mean = sums.mean(side / 2, side / 2, side);
    const double deviation =
        std::sqrt(std::max(squares.mean(side / 2, side / 2, side) - mean * mean, 1.0));
    ModuleLevels result{side, {}};
    result.levels.reserve(light.size());
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            result.levels.push_back(static_cast<float>(
                (sums.mean(column, row, reach) - value(column, row)) / deviation));
        }
    }
    return result;
}

ModuleLevels ModuleEqualiser::equalise(const ModuleLevels &held,
                                       const std::vector<bool> &sure) const
{
    const auto value = [this](int column, int row) -> double {
        return sample(2 * column + 1, 2 * row + 1);
    };
    const AreaSums sums(m_side, value);
    const auto count = static_cast<Eigen::Index>(held.levels.size());
    Rows input(count, inputs);
    Eigen::VectorXf target(count);
    Eigen::VectorXf weight(count);
    for (int row = 0; row < m_side; ++row) {
        for (int column = 0; column < m_side; ++column) {
            const Eigen::Index i = static_cast<Eigen::Index>(row) * m_side + column;
            int k = 0;
            for (int v = -reachHalves; v <= reachHalves; ++v) {
                for (int u = -reachHalves; u <= reachHalves; ++u) {
                    input(i, k++) = sample(2 * column + 1 + u, 2 * row + 1 + v);
                }
            }
            input(i, k++) = static_cast<float>(sums.mean(column, row, 2));
            input(i, k++) = static_cast<float>(sums.mean(column, row, 5));
            input(i, k++) = 1;
            const SymbolPattern::Module module = m_pattern.at(column, row);
            const bool known = SymbolPattern::isKnown(module);
            const bool dark =
                known ? module == SymbolPattern::Module::dark : held.at(column, row) > 0;
            target[i] = dark ? 1.0F : -1.0F;
            const bool firm = known || (!sure.empty() && sure[static_cast<std::size_t>(i)]);
            weight[i] = firm ? knownWeight : 1.0F;
        }
    }
    const Eigen::VectorXf output = input * bestWeights(input, target, weight);
    return {m_side, std::vector<float>(output.begin(), output.end())};
}

} // namespace quillmark
