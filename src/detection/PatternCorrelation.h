// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

#include <cstddef>
#include <vector>

namespace quillmark {

/// A place where a picture looks like a finder pattern that may be turned any way.
struct PatternPlace {
    PixelPoint middle;
    double module = 0;      ///< pixels, to about a tenth
    double correlation = 0; ///< 1 is a dark pattern on light, -1 a light one on dark
};

/// The places that look most like finder patterns with modules from `leastModule` to `mostModule`
/// pixels, the likeliest first, `most` of each polarity at most. Compares the whole neighbourhood
/// of each pixel with a finder pattern that is averaged over all the ways it can be turned, and so
/// sees patterns whose single rows blur, grain or a print's dots have spoiled. Takes some 100
/// operations for each pixel of a copy with modules of two pixels. Middles in pixels of the
/// picture. Throws std::bad_alloc. Any thread.
std::vector<PatternPlace> findPatternPlaces(const LumaView &picture, double leastModule,
                                            double mostModule, std::size_t most);

} // namespace quillmark
