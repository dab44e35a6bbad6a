// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <vector>

namespace quillmark {

/// An upright rectangle of pixels.
struct PixelArea {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// The side of such an area, with its margins, over that of the code in it; roughly.
inline constexpr double areaShare = 1.7;

/// Whether two areas are about the same.
bool areAlike(const PixelArea &a, const PixelArea &b);

/// Where on a picture a code may stand that cannot be told by its finder patterns yet: places
/// busier than what is around them, in all directions alike, that fill a quadrilateral as codes
/// do and foliage does not. The likeliest first, a few at most, each with some margin. Looks
/// at codes whose modules are about 1.5 to 6 pixels; others are seen on a copy of another size.
/// Any thread.
std::vector<PixelArea> findCodeRegions(const LumaView &picture);

} // namespace quillmark
