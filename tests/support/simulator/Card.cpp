// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Card.h"

#include "support/simulator/ParallelRows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

namespace quillmark::test {
namespace {

constexpr int subsamples = 3; // each way
constexpr int nodeStep = 8;   // pixels
constexpr int edgeSteps = 24;

struct Bounds {
    double left = std::numeric_limits<double>::max();
    double top = std::numeric_limits<double>::max();
    double right = std::numeric_limits<double>::lowest();
    double bottom = std::numeric_limits<double>::lowest();

    void include(Point p)
    {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
        top = std::min(top, p.y);
        bottom = std::max(bottom, p.y);
    }
};

Overlay placeOverlay(const Sheet &sheet, const CardGeometry &geometry, int frameWidth,
                     int frameHeight, int margin)
{
    Bounds bounds;
    for (int i = 0; i <= edgeSteps; ++i) {
        const double share = 1.0 * i / edgeSteps;
        const double x = std::lerp(sheet.left(), sheet.right(), share);
        const double y = std::lerp(sheet.top(), sheet.bottom(), share);
        for (const Point onEdge : {Point{x, sheet.top()}, Point{x, sheet.bottom()},
                                   Point{sheet.left(), y}, Point{sheet.right(), y}}) {
            bounds.include(geometry.map(onEdge));
        }
    }
    const auto within = [margin](double position, int limit) {
        return static_cast<int>(std::clamp(position, -1.0 * margin, 1.0 * limit + margin));
    };
    Overlay overlay;
    overlay.left = within(std::floor(bounds.left) - margin, frameWidth);
    overlay.top = within(std::floor(bounds.top) - margin, frameHeight);
    overlay.width = within(std::ceil(bounds.right) + margin, frameWidth) - overlay.left;
    overlay.height = within(std::ceil(bounds.bottom) + margin, frameHeight) - overlay.top;
    const auto size =
        static_cast<std::size_t>(overlay.width) * static_cast<std::size_t>(overlay.height);
    overlay.coverage.resize(size);
    overlay.light.resize(size);
    return overlay;
}

/// A pixel's place on the card, and how that moves from pixel to pixel.
struct Node {
    Point module;
    Point right; ///< modules that a step of a pixel to the right goes
    Point down;
};

std::optional<Node> nodeAt(const CardGeometry &geometry, Point pixel, Point guess)
{
    const std::optional<Point> module = geometry.find(pixel, guess);
    if (!module) {
        return std::nullopt;
    }
    const auto [rightX, rightY, downX, downY] = geometry.stepsAt(*module);
    const double area = rightX * downY - rightY * downX;
    return Node{*module, {downY / area, -rightY / area}, {-downX / area, rightX / area}};
}

/// The place between two nodes (cubic Hermite interpolation).
Node between(const Node &a, const Node &b, double t)
{
    const double s = 1 - t;
    const double fromA = (1 + 2 * t) * s * s;
    const double fromB = (3 - 2 * t) * t * t;
    const double slopeA = t * s * s * nodeStep;
    const double slopeB = -t * t * s * nodeStep;
    const auto mix = [&](double valueA, double valueB, double alongA, double alongB) {
        return fromA * valueA + fromB * valueB + slopeA * alongA + slopeB * alongB;
    };
    const auto blend = [s, t](Point one, Point other) {
        return Point{s * one.x + t * other.x, s * one.y + t * other.y};
    };
    return {{mix(a.module.x, b.module.x, a.right.x, b.right.x),
             mix(a.module.y, b.module.y, a.right.y, b.right.y)},
            blend(a.right, b.right),
            blend(a.down, b.down)};
}

/// What falls on one pixel whose centre is at the node.
void exposePixel(const Sheet &sheet, const Node &node, float &coverage, float &light)
{
    constexpr float share = 1.0F / (subsamples * subsamples);
    for (int i = 0; i < subsamples * subsamples; ++i) {
        const int row = i / subsamples;
        const double right = (i % subsamples + 0.5) / subsamples - 0.5;
        const double down = (row + 0.5) / subsamples - 0.5;
        const Point p{node.module.x + right * node.right.x + down * node.down.x,
                      node.module.y + right * node.right.y + down * node.down.y};
        if (sheet.covers(p)) {
            coverage += share;
            light += share * sheet.lightAt(p);
        }
    }
}

} // namespace

Overlay renderCard(const Sheet &sheet, const CardGeometry &geometry, int frameWidth,
                   int frameHeight, int margin, int workers)
{
    Overlay overlay = placeOverlay(sheet, geometry, frameWidth, frameHeight, margin);
    const Point middle{(sheet.left() + sheet.right()) / 2, (sheet.top() + sheet.bottom()) / 2};
    forEachBand(overlay.height, workers, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            const std::size_t row =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(overlay.width);
            const auto nodeOf = [&](int x, Point guess) {
                return nodeAt(geometry, {overlay.left + x + 0.5, overlay.top + y + 0.5}, guess);
            };
            std::optional<Node> node = nodeOf(0, middle);
            for (int x = 0; x < overlay.width; x += nodeStep) {
                const std::optional<Node> next = nodeOf(x + nodeStep, node ? node->module : middle);
                for (int i = 0; node && next && i < std::min(nodeStep, overlay.width - x); ++i) {
                    const std::size_t at = row + static_cast<std::size_t>(x + i);
                    exposePixel(sheet, between(*node, *next, 1.0 * i / nodeStep),
                                overlay.coverage[at], overlay.light[at]);
                }
                node = next;
            }
        }
    });
    return overlay;
}

} // namespace quillmark::test
