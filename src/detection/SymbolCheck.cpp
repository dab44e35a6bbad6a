// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolCheck.h"

#include "detection/Perspective.h"

#include <algorithm>
#include <cstdlib>

namespace quillmark {
namespace {

constexpr int finderSide = 7;
constexpr int smallestSide = 21;
constexpr int largestSide = 177;
constexpr int sideStep = 4;         // modules from version to version
constexpr int timingLine = 6;       // row and column of the timing patterns
constexpr double outside = 127.5;   // grey level: neither dark nor light
constexpr double leastContrast = 8; // grey levels; less is noise or nothing
constexpr double leastFinderShare = 0.88;
constexpr double leastTimingShare = 0.85;

bool finderIsDark(int column, int row)
{
    const int ring = std::max(std::abs(column - 3), std::abs(row - 3));
    return ring != 2;
}

/// How well samples agree with what a pattern should show.
class Agreement
{
public:
    void add(double value, bool dark)
    {
        (dark ? m_darkSum : m_lightSum) += value;
        (dark ? m_dark : m_light) += 1;
    }

    bool hasContrast() const { return light() - dark() >= leastContrast; }
    double threshold() const { return (light() + dark()) / 2; }

private:
    double light() const { return m_lightSum / m_light; }
    double dark() const { return m_darkSum / m_dark; }

    double m_darkSum = 0;
    double m_lightSum = 0;
    int m_dark = 0;
    int m_light = 0;
};

/// Reads modules of a symbol of an assumed version.
class ModuleProbe
{
public:
    ModuleProbe(const LumaView &picture, const Perspective &toPicture)
        : m_picture(picture), m_toPicture(toPicture)
    {}

    double at(int column, int row) const
    {
        const PixelPoint p = m_toPicture.map({column + 0.5, row + 0.5});
        // Written so that what is not a number fails too.
        if (!(p.x >= 0 && p.y >= 0 && p.x < m_picture.width && p.y < m_picture.height)) {
            return outside;
        }
        return m_picture.row(static_cast<int>(p.y))[static_cast<int>(p.x)];
    }

private:
    const LumaView &m_picture;
    Perspective m_toPicture;
};

template <typename Visit>
void forEachFinderModule(int side, const Visit &visit)
{
    for (int row = 0; row < finderSide; ++row) {
        for (int column = 0; column < finderSide; ++column) {
            const bool dark = finderIsDark(column, row);
            visit(column, row, dark);
            visit(column + side - finderSide, row, dark);
            visit(column, row + side - finderSide, dark);
        }
    }
}

template <typename Visit>
void forEachTimingModule(int side, const Visit &visit)
{
    for (int i = finderSide + 1; i < side - finderSide - 1; ++i) {
        const bool dark = i % 2 == 0;
        visit(i, timingLine, dark);
        visit(timingLine, i, dark);
    }
}

bool passes(const ModuleProbe &probe, int side, bool isDark)
{
    Agreement contrast;
    const auto sample = [&](int column, int row, bool dark) {
        contrast.add(probe.at(column, row), dark == isDark);
    };
    forEachFinderModule(side, sample);
    if (!contrast.hasContrast()) {
        return false;
    }
    const double threshold = contrast.threshold();
    int right = 0;
    int all = 0;
    const auto count = [&](int column, int row, bool dark) {
        right += (probe.at(column, row) < threshold) == (dark == isDark) ? 1 : 0;
        ++all;
    };
    forEachFinderModule(side, count);
    if (right < leastFinderShare * all) {
        return false;
    }
    right = 0;
    all = 0;
    forEachTimingModule(side, count);
    return right >= leastTimingShare * all;
}

/// The corners of a code of the given side whose finder patterns the triangle marks.
SymbolCorners cornersOf(const FinderTriangle &triangle, int side)
{
    const FinderMark &corner = triangle.corner;
    // From the middle of one finder pattern to the next lie all modules but seven.
    const double modules = side - finderSide;
    const PixelPoint right{(triangle.first.x - corner.x) / modules,
                           (triangle.first.y - corner.y) / modules};
    const PixelPoint down{(triangle.second.x - corner.x) / modules,
                          (triangle.second.y - corner.y) / modules};
    const double before = finderSide / 2.0;
    const double after = side - before;
    const auto at = [&](double column, double row) {
        return PixelPoint{corner.x + column * right.x + row * down.x,
                          corner.y + column * right.y + row * down.y};
    };
    return {at(-before, -before), at(after, -before), at(after, after), at(-before, after)};
}

} // namespace

std::optional<SymbolCorners> findSymbol(const LumaView &picture, const FinderTriangle &triangle)
{
    for (int side = smallestSide; side <= largestSide; side += sideStep) {
        const SymbolCorners corners = cornersOf(triangle, side);
        const ModuleProbe probe(picture, Perspective::ofSquare(side, corners));
        if (passes(probe, side, triangle.corner.isDark)) {
            return corners;
        }
    }
    return std::nullopt;
}

} // namespace quillmark
