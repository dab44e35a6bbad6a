// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/ModuleEqualiser.h"
#include "detection/RegionImage.h"
#include "detection/SymbolGrid.h"
#include "support/simulator/SlateFrame.h"

namespace quillmark::test {

/// A simulated code in the middle of a picture without grain, and where each of its modules is.
struct CodePicture {
    QrMatrix code;
    CardGeometry geometry;
    bool isDark = true; ///< dark on light
    LumaImage luma;

    PixelPoint map(double column, double row) const
    {
        const Point place = geometry.map({column, row});
        return {place.x, place.y};
    }
};

struct CodePictureOptions {
    int version = 8;
    CardPose pose = {.modulePixels = 5}; ///< its place is of no account
    double blur = 0.15;                  ///< modules
    double distortion = 0;
    bool negative = false;
};

CodePicture codePicture(const CodePictureOptions &options);

/// The triangle of the code's finder patterns, where they are.
FinderTriangle triangleOf(const CodePicture &picture);

/// The grid that goes through 7 x 7 places of the code, each moved by what `offset` gives for it
/// in modules.
template <typename Offset>
SymbolGrid gridThrough(const CodePicture &picture, const RegionImage &region, const Offset &offset)
{
    std::vector<GridKnot> knots;
    for (int v = 0; v <= 6; ++v) {
        for (int u = 0; u <= 6; ++u) {
            const double column = u * picture.code.size / 6.0;
            const double row = v * picture.code.size / 6.0;
            const PixelPoint off = offset(column, row);
            knots.push_back(
                {{column, row}, region.fromFrame(picture.map(column + off.x, row + off.y)), 1});
        }
    }
    return SymbolGrid::through((picture.code.size - 17) / 4, knots).value();
}

/// The grid that the code has.
SymbolGrid trueGrid(const CodePicture &picture, const RegionImage &region);

/// How far the grid's middle of a module lies from the picture's at most, in modules.
double worstError(const CodePicture &picture, const RegionImage &region, const SymbolGrid &grid,
                  bool transposed = false);

/// Of the modules of the code the share that is told wrong.
double shareWrong(const QrMatrix &code, const ModuleLevels &levels);

/// The code's modules without a doubt.
ModuleLevels levelsOf(const QrMatrix &code);

/// A picture of one grey level.
LumaImage plainPicture(int width, int height, std::uint8_t level);

/// A picture of pixels by chance.
LumaImage noisePicture(int width, int height, std::uint64_t seed);

} // namespace quillmark::test
