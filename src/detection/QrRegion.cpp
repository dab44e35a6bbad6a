// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrRegion.h"

#include "detection/FrameCopy.h"
#include "detection/Reduce.h"
#include "detection/Sharpen.h"
#include "detection/SymbolCheck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <optional>

namespace quillmark {
namespace {

constexpr double quietModules = 8;   // around the code: its quiet zone and as much again
constexpr double leaningShare = 0.1; // of its size by which a corner may lie farther out
constexpr int largestEnlargement = 4;

/// A copy of a region that the decoder reads well, given what the region's modules are.
struct Preparation {
    double modulePixels; ///< on the copy
    int sharpening;      ///< quarters
};

/// In the order of what they read first in trials: little is left for the later ones.
constexpr std::array<Preparation, 8> preparations{
    {{4, 8}, {5, 4}, {3, 8}, {7, 4}, {2, 4}, {3, 14}, {4, 4}, {10, 4}}};

constexpr Preparation forChecking{5, 2};

struct Rectangle {
    int left;
    int top;
    int width;
    int height;
};

Rectangle rectangleAround(const FinderTriangle &triangle)
{
    const std::array<PixelPoint, 4> corners{{{triangle.corner.x, triangle.corner.y},
                                             {triangle.first.x, triangle.first.y},
                                             {triangle.second.x, triangle.second.y},
                                             triangle.opposite()}};
    const auto [left, right] = std::ranges::minmax(corners, {}, &PixelPoint::x);
    const auto [top, bottom] = std::ranges::minmax(corners, {}, &PixelPoint::y);
    const double size = std::max(right.x - left.x, bottom.y - top.y);
    const double margin = quietModules * triangle.module + leaningShare * size;
    return {static_cast<int>(left.x - margin), static_cast<int>(top.y - margin),
            static_cast<int>(right.x - left.x + 2 * margin),
            static_cast<int>(bottom.y - top.y + 2 * margin)};
}

FrameCopy prepareCopy(const LumaView &frame, const FinderTriangle &triangle,
                      const Preparation &preparation)
{
    const Rectangle area = rectangleAround(triangle);
    const LumaView region = frame.cropped(area.left, area.top, area.width, area.height);
    FrameCopy copy;
    copy.left = std::max(0, area.left);
    copy.top = std::max(0, area.top);
    const double ratio = triangle.module / preparation.modulePixels;
    if (ratio >= 0.75) {
        const int factor = std::max(1, static_cast<int>(std::lround(ratio)));
        copy.image = reduceByBox(region, factor);
        copy.scale = factor;
    } else {
        const int factor = std::min(largestEnlargement, static_cast<int>(std::lround(1.0 / ratio)));
        copy.image = enlarge(region, factor);
        copy.scale = 1.0 / factor;
    }
    sharpen(copy.image, preparation.sharpening);
    return copy;
}

/// The code of the triangle, without text, if there is one.
std::vector<QrSymbol> findUnread(const LumaView &frame, const FinderTriangle &triangle)
{
    const FrameCopy copy = prepareCopy(frame, triangle, forChecking);
    FinderTriangle onCopy = triangle;
    onCopy.transform(-copy.left, -copy.top, 1.0 / copy.scale);
    std::optional<SymbolCorners> corners = findSymbol(copy.image, onCopy);
    if (!corners) {
        return {};
    }
    for (PixelPoint &corner : *corners) {
        corner = copy.toFrame(corner);
    }
    return {{std::nullopt, *corners}};
}

} // namespace

std::vector<QrSymbol> readRegion(const LumaView &frame, const FinderTriangle &triangle) noexcept
try {
    const Polarity polarity =
        triangle.corner.isDark ? Polarity::darkOnLight : Polarity::lightOnDark;
    for (const Preparation &preparation : preparations) {
        std::vector<QrSymbol> symbols =
            readCopy(prepareCopy(frame, triangle, preparation), polarity, QrEffort::thorough);
        if (!symbols.empty()) {
            return symbols;
        }
    }
    return findUnread(frame, triangle);
} catch (const std::exception &) {
    // Out of memory.
    return {};
}

} // namespace quillmark
