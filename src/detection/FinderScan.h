// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <vector>

namespace quillmark {

/// A place that looks like the middle of a QR finder pattern.
struct FinderMark {
    double x = 0; ///< in pixels of the picture
    double y = 0;
    double module = 0;    ///< pixels to one module
    bool isDark = true;   ///< dark on light
    double threshold = 0; ///< grey level between the pattern's light and dark
    double contrast = 0;  ///< grey levels from its light to its dark
    int hits = 0;         ///< scanned rows that crossed it; none where it is only supposed
    int diagonals = 0;    ///< along how many of the two the pattern repeats; at least 1
};

/// Looks for finder patterns in both polarities: runs of 1 : 1 : 3 : 1 : 1 along a row that
/// repeat down the column through their middle (ISO/IEC 18004 section 12 a). Light and dark
/// are told apart by the mean of the row's neighbourhood, so that slow changes of light do
/// not matter. Sees modules of about 1.8 to 7 pixels; larger ones are seen on a reduced
/// copy. Every `rowStep`th row is scanned, 1 or more: a pattern is three modules high in
/// its middle. Takes the memory of a few rows. Any thread.
std::vector<FinderMark> scanForFinders(const LumaView &picture, int rowStep);

} // namespace quillmark
