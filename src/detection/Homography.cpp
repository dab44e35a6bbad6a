// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/Homography.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace quillmark {
namespace {

using Matrix8 = Eigen::Matrix<double, 8, 8>;
using Vector8 = Eigen::Matrix<double, 8, 1>;

constexpr int rounds = 6;            // the depths then no longer change
constexpr double leastPivot = 1e-12; // of the largest: below, the knots leave something open

/// The equations for the eight numbers of a projection.
struct Equations {
    Matrix8 normal = Matrix8::Zero();
    Vector8 right = Vector8::Zero();

    void add(const Vector8 &row, double value, double weight)
    {
        normal.noalias() += weight * row * row.transpose();
        right += weight * value * row;
    }

    std::optional<Vector8> solved() const
    {
        const Eigen::LDLT<Matrix8> solver(normal);
        const Vector8 pivots = solver.vectorD();
        if (!(pivots.minCoeff() > leastPivot * pivots.maxCoeff())) {
            return std::nullopt;
        }
        const Vector8 found = solver.solve(right);
        return found.allFinite() ? std::optional(found) : std::nullopt;
    }
};

/// Knots brought to places of about -1 to 1, so that the equations are well conditioned.
struct Scaling {
    explicit Scaling(std::span<const GridKnot> knots)
    {
        for (const GridKnot &knot : knots) {
            module = std::max({module, std::abs(knot.module.x), std::abs(knot.module.y)});
            middle.x += knot.pixel.x / static_cast<double>(knots.size());
            middle.y += knot.pixel.y / static_cast<double>(knots.size());
        }
        for (const GridKnot &knot : knots) {
            pixel = std::max(
                {pixel, std::abs(knot.pixel.x - middle.x), std::abs(knot.pixel.y - middle.y)});
        }
    }

    double module = 1;
    double pixel = 1e-6;
    PixelPoint middle;
};

} // namespace

std::optional<Homography> Homography::fit(std::span<const GridKnot> knots)
{
    if (knots.size() < 4) {
        return std::nullopt;
    }
    const Scaling scaling(knots);
    Vector8 h = Vector8::Zero();
    for (int round = 0; round < rounds; ++round) {
        Equations equations;
        for (const GridKnot &knot : knots) {
            const double u = knot.module.x / scaling.module;
            const double v = knot.module.y / scaling.module;
            const double x = (knot.pixel.x - scaling.middle.x) / scaling.pixel;
            const double y = (knot.pixel.y - scaling.middle.y) / scaling.pixel;
            // The equations are off by the distance on the picture times the depth.
            const double depth = h[6] * u + h[7] * v + 1;
            const double weight = knot.weight / (depth * depth);
            Vector8 across;
            Vector8 down;
            across << u, v, 1, 0, 0, 0, -u * x, -v * x;
            down << 0, 0, 0, u, v, 1, -u * y, -v * y;
            equations.add(across, x, weight);
            equations.add(down, y, weight);
        }
        const std::optional<Vector8> found = equations.solved();
        if (!found) {
            return std::nullopt;
        }
        h = *found;
    }
    Homography result;
    result.m_m = {(scaling.pixel * h[0] + scaling.middle.x * h[6]) / scaling.module,
                  (scaling.pixel * h[1] + scaling.middle.x * h[7]) / scaling.module,
                  scaling.pixel * h[2] + scaling.middle.x,
                  (scaling.pixel * h[3] + scaling.middle.y * h[6]) / scaling.module,
                  (scaling.pixel * h[4] + scaling.middle.y * h[7]) / scaling.module,
                  scaling.pixel * h[5] + scaling.middle.y,
                  h[6] / scaling.module,
                  h[7] / scaling.module};
    return result;
}

} // namespace quillmark
