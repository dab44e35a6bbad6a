// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "CodePictures.h"

#include "support/simulator/Random.h"

#include <algorithm>
#include <cmath>

namespace quillmark::test {
namespace {

double stepLength(const CodePicture &picture, PixelPoint place)
{
    const auto steps = picture.geometry.stepsAt({place.x, place.y});
    return (std::hypot(steps[0], steps[1]) + std::hypot(steps[2], steps[3])) / 2;
}

} // namespace

CodePicture codePicture(const CodePictureOptions &options)
{
    SimulatedCard card;
    card.code = encodeQr("A slate of a roll", QrLevel::M, options.version);
    card.pose = options.pose;
    card.blur = options.blur;
    SimulatedFrame frame;
    frame.width = static_cast<int>(1.8 * card.code.size * options.pose.modulePixels) + 100;
    frame.height = frame.width;
    frame.film.negative = options.negative;
    frame.distortion = options.distortion;
    card.pose.centreX = frame.width / 2.0;
    card.pose.centreY = frame.height / 2.0;
    frame.cards.push_back(card);
    return {card.code, geometryOf(frame, card), !options.negative, renderLuma(frame)};
}

FinderTriangle triangleOf(const CodePicture &picture)
{
    const auto markAt = [&picture](double column, double row) {
        FinderMark mark;
        const PixelPoint place = picture.map(column, row);
        mark.x = place.x;
        mark.y = place.y;
        mark.module = stepLength(picture, {column, row});
        mark.isDark = picture.isDark;
        mark.threshold = 128;
        mark.contrast = 150;
        mark.hits = 5;
        mark.diagonals = 2;
        return mark;
    };
    const double far = picture.code.size - 3.5;
    FinderTriangle triangle{markAt(3.5, 3.5), markAt(far, 3.5), markAt(3.5, far), 0, 0};
    triangle.module = (triangle.corner.module + triangle.first.module + triangle.second.module) / 3;
    return triangle;
}

SymbolGrid trueGrid(const CodePicture &picture, const RegionImage &region)
{
    return gridThrough(picture, region, [](double, double) { return PixelPoint{}; });
}

double worstError(const CodePicture &picture, const RegionImage &region, const SymbolGrid &grid,
                  bool transposed)
{
    double worst = 0;
    for (int row = 0; row < picture.code.size; ++row) {
        for (int column = 0; column < picture.code.size; ++column) {
            const double u = column + 0.5;
            const double v = row + 0.5;
            const PixelPoint found = region.toFrame(transposed ? grid.at(v, u) : grid.at(u, v));
            const PixelPoint wanted = picture.map(u, v);
            worst = std::max(worst, std::hypot(found.x - wanted.x, found.y - wanted.y) /
                                        stepLength(picture, {u, v}));
        }
    }
    return worst;
}

double shareWrong(const QrMatrix &code, const ModuleLevels &levels)
{
    int wrong = 0;
    for (int row = 0; row < code.size; ++row) {
        for (int column = 0; column < code.size; ++column) {
            wrong += (levels.at(column, row) > 0) != code.isDark(column, row) ? 1 : 0;
        }
    }
    return static_cast<double>(wrong) / (code.size * code.size);
}

ModuleLevels levelsOf(const QrMatrix &code)
{
    ModuleLevels levels{code.size, {}};
    std::ranges::transform(code.cells, std::back_inserter(levels.levels),
                           [](std::uint8_t dark) { return dark != 0 ? 1.0F : -1.0F; });
    return levels;
}

LumaImage plainPicture(int width, int height, std::uint8_t level)
{
    LumaImage image{width, height, {}};
    image.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), level);
    return image;
}

LumaImage noisePicture(int width, int height, std::uint64_t seed)
{
    LumaImage image = plainPicture(width, height, 0);
    Random random(seed);
    std::ranges::generate(image.pixels,
                          [&random] { return static_cast<std::uint8_t>(random.below(256)); });
    return image;
}

} // namespace quillmark::test
