// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/QrSymbol.h"
#include "detection/RegionImage.h"

#include <optional>

namespace quillmark {

/// How a small piece of a code lies on a picture: where its middle is, and which way and how
/// far a module goes.
struct LocalFrame {
    PixelPoint middle;
    PixelPoint right; ///< one module along a row
    PixelPoint down;  ///< one module along a column
    double score = 0; ///< correlation with the pattern: 1 is perfect

    PixelPoint at(double u, double v) const
    {
        return {middle.x + u * right.x + v * down.x, middle.y + u * right.y + v * down.y};
    }
};

/// Moves, turns and stretches a frame until the finder pattern in it fits the picture best,
/// from a start that is up to about a module off. Nothing where no pattern comes to lie there.
/// The method is that of Lucas and Kanade ("An iterative image registration technique with an
/// application to stereo vision", 1981) with gain and offset of the light free, on a pattern
/// blurred as a lens does. Any thread.
std::optional<LocalFrame> fitFinder(const RegionImage &picture, const LocalFrame &start);

/// The same where nothing is known of how the pattern is turned; its middle and module are to
/// about a fifth.
std::optional<LocalFrame> fitTurnedFinder(const RegionImage &picture, PixelPoint middle,
                                          double module);

/// The light of a finder pattern, in grey levels of the picture.
struct FinderLight {
    double middle = 0;   ///< between its light and dark
    double contrast = 0; ///< from its dark to its light
};
FinderLight finderLight(const RegionImage &picture, const LocalFrame &frame);

/// Looks for a finder pattern up to `reach` modules around the middle of a frame whose steps are
/// about known. Nothing where none stands out.
std::optional<LocalFrame> findFinder(const RegionImage &picture, const LocalFrame &start,
                                     double reach);

/// Looks for the alignment pattern (ISO/IEC 18004:2015 section 6.3.6) up to `reach` modules
/// around the middle of a frame whose steps are known. Nothing where none stands out.
std::optional<LocalFrame> findAlignment(const RegionImage &picture, const LocalFrame &start,
                                        double reach);

} // namespace quillmark
