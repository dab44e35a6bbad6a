// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/GridRefinement.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

constexpr int blockReach = 5;     // modules from a block's middle module
constexpr double blockStep = 6.5; // modules from block to block
constexpr double blur = 0.5;      // modules
constexpr double farthest = 0.8;  // modules that a block may be off
constexpr double leastCorrelation = 0.4;

/// How much of a blurred module's light falls where, along one axis.
double share(double offset)
{
    const double scale = 1 / (blur * std::sqrt(2.0));
    return 0.5 * (std::erf((offset + 0.5) * scale) - std::erf((offset - 0.5) * scale));
}

double shareSlope(double offset)
{
    const auto bell = [](double x) {
        return std::exp(-x * x / (2 * blur * blur)) / (blur * std::sqrt(2 * std::acos(-1.0)));
    };
    return bell(offset + 0.5) - bell(offset - 0.5);
}

/// What the picture should show at half a module's steps: value, and slopes to a module.
struct Expected {
    double value = 0;
    double slopeU = 0;
    double slopeV = 0;
};

class ExpectedPicture
{
public:
    explicit ExpectedPicture(const ModuleLevels &held) : m_held(held)
    {
        for (std::size_t half = 0; half < 2; ++half) {
            for (std::size_t k = 0; k < reach; ++k) {
                const double offset = (half == 0 ? 0.0 : 0.5) - (static_cast<double>(k) - 2);
                m_shares[half][k] = share(offset);
                m_slopes[half][k] = shareSlope(offset);
            }
        }
    }

    /// At the middle of a module, or half a module to its right or below it.
    Expected at(int column, int row, std::size_t right, std::size_t down) const
    {
        Expected expected;
        for (std::size_t v = 0; v < reach; ++v) {
            for (std::size_t u = 0; u < reach; ++u) {
                const double level =
                    light(column + static_cast<int>(u) - 2, row + static_cast<int>(v) - 2);
                expected.value += level * m_shares[right][u] * m_shares[down][v];
                expected.slopeU += level * m_slopes[right][u] * m_shares[down][v];
                expected.slopeV += level * m_shares[right][u] * m_slopes[down][v];
            }
        }
        return expected;
    }

private:
    static constexpr std::size_t reach = 6;

    double light(int column, int row) const
    {
        if (column < 0 || row < 0 || column >= m_held.side || row >= m_held.side) {
            return 1;
        }
        return -std::clamp(static_cast<double>(m_held.at(column, row)), -1.0, 1.0);
    }

    const ModuleLevels &m_held;
    std::array<std::array<double, reach>, 2> m_shares{};
    std::array<std::array<double, reach>, 2> m_slopes{};
};

/// By how many modules what is expected around a module lies off on the picture.
std::optional<PixelPoint> offsetOf(const RegionImage &picture, const SymbolGrid &grid,
                                   const ExpectedPicture &expected, int column, int row)
{
    Eigen::Matrix4d normal = Eigen::Matrix4d::Zero();
    Eigen::Vector4d right = Eigen::Vector4d::Zero();
    double squares = 0;
    double sum = 0;
    int count = 0;
    for (int y = std::max(row - blockReach, 0); y <= std::min(row + blockReach, grid.side() - 1);
         ++y) {
        for (int x = std::max(column - blockReach, 0);
             x <= std::min(column + blockReach, grid.side() - 1); ++x) {
            for (std::size_t half = 0; half < 4; ++half) {
                const std::size_t across = half % 2;
                const std::size_t down = half / 2;
                const Expected wanted = expected.at(x, y, across, down);
                const double level = picture.at(grid.at(x + 0.5 + 0.5 * static_cast<double>(across),
                                                        y + 0.5 + 0.5 * static_cast<double>(down)));
                const Eigen::Vector4d terms(1, wanted.value, wanted.slopeU, wanted.slopeV);
                normal += terms * terms.transpose();
                right += level * terms;
                squares += level * level;
                sum += level;
                ++count;
            }
        }
    }
    const Eigen::Vector4d found = normal.ldlt().solve(right);
    if (!found.allFinite() || found[1] <= 0) {
        return std::nullopt;
    }
    const double spread = squares - sum * sum / count;
    const double explained = found.dot(right) - sum * sum / count;
    if (spread <= 0 || explained < leastCorrelation * leastCorrelation * spread) {
        return std::nullopt;
    }
    // A pattern that lies farther to the right shows what is expected farther to the left.
    const PixelPoint offset{-found[2] / found[1], -found[3] / found[1]};
    return std::hypot(offset.x, offset.y) <= farthest ? std::optional(offset) : std::nullopt;
}

} // namespace

std::optional<SymbolGrid> refineGrid(const RegionImage &picture, const SymbolGrid &grid,
                                     const ModuleLevels &held)
{
    const ExpectedPicture expected(held);
    const int blocks = std::max(3, static_cast<int>(std::lround(grid.side() / blockStep)));
    std::vector<GridKnot> knots;
    for (int v = 0; v < blocks; ++v) {
        for (int u = 0; u < blocks; ++u) {
            const int column = (2 * u + 1) * grid.side() / (2 * blocks);
            const int row = (2 * v + 1) * grid.side() / (2 * blocks);
            const PixelPoint place{column + 0.5, row + 0.5};
            if (const auto offset = offsetOf(picture, grid, expected, column, row)) {
                knots.push_back({place, grid.at(place.x + offset->x, place.y + offset->y), 1});
            }
        }
    }
    if (2 * static_cast<int>(knots.size()) < blocks * blocks) {
        return std::nullopt;
    }
    return SymbolGrid::through(grid.version(), std::move(knots));
}

} // namespace quillmark
