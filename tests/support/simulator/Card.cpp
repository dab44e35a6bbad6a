// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Card.h"

#include "support/simulator/ParallelRows.h"
#include "support/simulator/Random.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace quillmark::test {
namespace {

constexpr float paper = 0.93F;
constexpr float ink = 0.05F;
constexpr double quietZone = 4; // modules, ISO/IEC 18004 section 6.3.8
constexpr int subsamples = 3;   // each way

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

/// What is printed where, in module coordinates.
class Sheet
{
public:
    Sheet(const QrMatrix &code, std::uint64_t seed) : m_code(code), m_side(code.size), m_seed(seed)
    {}

    double left() const { return -quietZone - 0.04 * m_side; }
    double right() const { return m_side - left(); }
    double top() const { return -quietZone - 0.16 * m_side; }
    double bottom() const { return m_side + quietZone + 0.3 * m_side; }

    bool covers(Point p) const
    {
        return p.x >= left() && p.x < right() && p.y >= top() && p.y < bottom();
    }

    bool isInked(Point p) const
    {
        if (p.x >= 0 && p.y >= 0 && p.x < m_side && p.y < m_side) {
            return m_code.isDark(static_cast<int>(p.x), static_cast<int>(p.y));
        }
        if (p.x < 0 || p.x >= m_side) {
            return false;
        }
        const double titleTop = top() + 0.04 * m_side;
        if (p.y >= titleTop && p.y < titleTop + 0.07 * m_side) {
            return p.x < 0.62 * m_side && isLetter(p, titleTop, 0.07 * m_side);
        }
        const double notesTop = m_side + quietZone;
        return p.y >= notesTop && p.y < bottom() - 0.05 * m_side &&
               isLetter(p, notesTop, 0.035 * m_side);
    }

private:
    /// Print: lines of letters, each letter a small pattern of strokes.
    bool isLetter(Point p, double textTop, double letterHeight) const
    {
        const double down = (p.y - textTop) / (1.7 * letterHeight);
        const double along = p.x / (0.7 * letterHeight);
        const auto line = static_cast<std::uint64_t>(down);
        const auto letter = static_cast<std::uint64_t>(along);
        const double inLine = (down - static_cast<double>(line)) * 1.7;
        if (inLine >= 1.0) {
            return false;
        }
        const std::uint64_t shape = hash64(m_seed ^ (line << 32) ^ letter);
        if (shape % 6 == 0) {
            return false; // a gap between words
        }
        const auto strokeX = static_cast<unsigned>((along - static_cast<double>(letter)) * 4.0);
        const auto strokeY = static_cast<unsigned>(inLine * 5.0);
        return strokeX < 3 && ((shape >> (8 + strokeY * 3 + strokeX)) & 1U) != 0;
    }

    const QrMatrix &m_code;
    double m_side;
    std::uint64_t m_seed;
};

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

Overlay placeOverlay(const Sheet &sheet, const Homography &projection, int frameWidth,
                     int frameHeight, int margin)
{
    Bounds bounds;
    for (const Point corner :
         {Point{sheet.left(), sheet.top()}, Point{sheet.right(), sheet.top()},
          Point{sheet.right(), sheet.bottom()}, Point{sheet.left(), sheet.bottom()}}) {
        bounds.include(projection.map(corner));
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

} // namespace

Homography projectionOf(const CardPose &pose, int codeSize)
{
    // Module coordinates around the code's centre, scaled, mirrored and turned; then the
    // plane leans by an angle around an axis, seen from a little more than twice its width.
    const double scaleX = pose.mirrored ? -pose.modulePixels : pose.modulePixels;
    const double scaleY = pose.modulePixels;
    const double turnCos = std::cos(radians(pose.tilt));
    const double turnSin = std::sin(radians(pose.tilt));
    const double half = codeSize / 2.0;
    const double distance = 2.2 * codeSize * pose.modulePixels;

    // x = xu u + xv v + x1 and so on, u and v being module coordinates.
    const std::array<double, 3> x{turnCos * scaleX, -turnSin * scaleY,
                                  -half * (turnCos * scaleX - turnSin * scaleY)};
    const std::array<double, 3> y{turnSin * scaleX, turnCos * scaleY,
                                  -half * (turnSin * scaleX + turnCos * scaleY)};
    const double leanCos = std::cos(radians(pose.leanTowards));
    const double leanSin = std::sin(radians(pose.leanTowards));
    const double shrink = 1.0 - std::cos(radians(pose.perspective));
    const double depth = std::sin(radians(pose.perspective)) / distance;

    Homography projection;
    for (std::size_t i = 0; i < 3; ++i) {
        const double along = leanCos * x[i] + leanSin * y[i];
        const double w = along * depth + (i == 2 ? 1.0 : 0.0);
        projection.m[i] = x[i] - shrink * along * leanCos + pose.centreX * w;
        projection.m[3 + i] = y[i] - shrink * along * leanSin + pose.centreY * w;
        projection.m[6 + i] = w;
    }
    return projection;
}

std::array<Point, 4> codeCorners(const CardPose &pose, int codeSize)
{
    const Homography projection = projectionOf(pose, codeSize);
    const double side = codeSize;
    return {projection.map({0, 0}), projection.map({side, 0}), projection.map({side, side}),
            projection.map({0, side})};
}

Overlay renderCard(const QrMatrix &code, const CardPose &pose, int frameWidth, int frameHeight,
                   int margin, std::uint64_t seed, int workers)
{
    const Homography projection = projectionOf(pose, code.size);
    const Homography toSheet = projection.inverse();
    const Sheet sheet(code, hash64(seed));
    Overlay overlay = placeOverlay(sheet, projection, frameWidth, frameHeight, margin);

    forEachBand(overlay.height, workers, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            const std::size_t row =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(overlay.width);
            for (int x = 0; x < overlay.width; ++x) {
                int covered = 0;
                int inked = 0;
                for (int i = 0; i < subsamples * subsamples; ++i) {
                    const int subColumn = i % subsamples;
                    const int subRow = i / subsamples;
                    const double subX = (subColumn + 0.5) / subsamples;
                    const double subY = (subRow + 0.5) / subsamples;
                    const Point p = toSheet.map({overlay.left + x + subX, overlay.top + y + subY});
                    if (sheet.covers(p)) {
                        ++covered;
                        inked += sheet.isInked(p) ? 1 : 0;
                    }
                }
                constexpr float share = 1.0F / (subsamples * subsamples);
                const std::size_t at = row + static_cast<std::size_t>(x);
                overlay.coverage[at] = static_cast<float>(covered) * share;
                overlay.light[at] = (static_cast<float>(covered - inked) * paper +
                                     static_cast<float>(inked) * ink) *
                                    share;
            }
        }
    });
    return overlay;
}

} // namespace quillmark::test
