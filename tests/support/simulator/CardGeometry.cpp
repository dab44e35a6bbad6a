// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/CardGeometry.h"

#include <cmath>
#include <numbers>

namespace quillmark::test {
namespace {

constexpr double cameraDistance = 2.2; // code widths
constexpr double tolerance = 1e-3;     // pixels
constexpr int mostIterations = 25;

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

} // namespace

CardGeometry::CardGeometry(const CardPose &pose, int codeSize, const LensDistortion &lens)
    : m_centre{pose.centreX, pose.centreY},
      m_half(codeSize / 2.0),
      m_scaleX(pose.mirrored ? -pose.modulePixels : pose.modulePixels),
      m_scaleY(pose.modulePixels),
      m_turnCos(std::cos(radians(pose.tilt))),
      m_turnSin(std::sin(radians(pose.tilt))),
      m_curvature(radians(pose.curl) / (codeSize * pose.modulePixels)),
      m_curlCos(std::cos(radians(pose.curlTowards))),
      m_curlSin(std::sin(radians(pose.curlTowards))),
      m_leanCos(std::cos(radians(pose.leanTowards))),
      m_leanSin(std::sin(radians(pose.leanTowards))),
      m_awayCos(std::cos(radians(pose.perspective))),
      m_awaySin(std::sin(radians(pose.perspective))),
      m_distance(cameraDistance * codeSize * pose.modulePixels),
      m_lens(lens)
{}

Point CardGeometry::map(Point module) const
{
    const double across = m_scaleX * (module.x - m_half);
    const double down = m_scaleY * (module.y - m_half);
    double x = m_turnCos * across - m_turnSin * down;
    double y = m_turnSin * across + m_turnCos * down;
    double height = 0;
    if (m_curvature != 0) {
        // The sheet keeps its lengths: what was a straight way is one along an arc.
        const double way = m_curlCos * x + m_curlSin * y;
        const double shorter = std::sin(way * m_curvature) / m_curvature - way;
        height = (1 - std::cos(way * m_curvature)) / m_curvature;
        x += shorter * m_curlCos;
        y += shorter * m_curlSin;
    }
    const double along = m_leanCos * x + m_leanSin * y;
    const double shift = along * m_awayCos - height * m_awaySin - along;
    const double depth = along * m_awaySin + height * m_awayCos;
    const double w = 1 + depth / m_distance;
    const Point seen{m_centre.x + (x + shift * m_leanCos) / w,
                     m_centre.y + (y + shift * m_leanSin) / w};
    if (m_lens.strength == 0) {
        return seen;
    }
    const double fromMiddleX = seen.x - m_lens.middle.x;
    const double fromMiddleY = seen.y - m_lens.middle.y;
    const double factor = 1 + m_lens.strength *
                                  (fromMiddleX * fromMiddleX + fromMiddleY * fromMiddleY) /
                                  (m_lens.reach * m_lens.reach);
    return {m_lens.middle.x + factor * fromMiddleX, m_lens.middle.y + factor * fromMiddleY};
}

std::array<double, 4> CardGeometry::stepsAt(Point module) const
{
    constexpr double step = 1e-3; // modules, small beside all bends
    const Point here = map(module);
    const Point right = map({module.x + step, module.y});
    const Point below = map({module.x, module.y + step});
    return {(right.x - here.x) / step, (right.y - here.y) / step, (below.x - here.x) / step,
            (below.y - here.y) / step};
}

std::optional<Point> CardGeometry::find(Point pixel, Point guess) const
{
    Point module = guess;
    for (int i = 0; i < mostIterations; ++i) {
        const Point here = map(module);
        const double awayX = pixel.x - here.x;
        const double awayY = pixel.y - here.y;
        if (std::abs(awayX) + std::abs(awayY) < tolerance) {
            return module;
        }
        const auto [rightX, rightY, downX, downY] = stepsAt(module);
        const double area = rightX * downY - rightY * downX;
        module.x += (awayX * downY - awayY * downX) / area;
        module.y += (awayY * rightX - awayX * rightY) / area;
        if (!(std::abs(module.x) + std::abs(module.y) < 100 * m_half)) {
            break;
        }
    }
    return std::nullopt;
}

std::array<Point, 4> CardGeometry::codeCorners() const
{
    const double side = 2 * m_half;
    return {map({0, 0}), map({side, 0}), map({side, side}), map({0, side})};
}

} // namespace quillmark::test
