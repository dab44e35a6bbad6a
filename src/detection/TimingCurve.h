// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"
#include "detection/PatternFit.h"

namespace quillmark {

/// A finder pattern as seen along one side of its code.
struct SideEnd {
    PixelPoint middle;
    PixelPoint along;  ///< one module, the way the line goes
    PixelPoint inward; ///< one module, towards the middle of the code
};

/// How well light and dark alternate along the timing pattern (ISO/IEC 18004:2015 section 6.3.5)
/// between two finder patterns whose middles are `modules` apart: 1 is perfectly, 0 by chance.
/// The line leaves and reaches the patterns as these are turned and stretched, so that it
/// follows a code that leans or is bent. For dark codes on light; light ones come out negative.
/// All in pixels of the picture. Any thread.
double timingAlong(const LumaView &picture, const SideEnd &from, const SideEnd &to, int modules);

} // namespace quillmark
