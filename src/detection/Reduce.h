// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

namespace quillmark {

/// A copy at 1/factor of the size: each pixel is the mean of factor x factor pixels.
/// Columns and rows at the right and lower edge that do not fill a pixel are left out.
/// `factor` is 1 to 16. Any thread.
LumaImage reduceByBox(const LumaView &picture, int factor);

/// A copy at `factor` times the size, 2 to 4, interpolated linearly. Any thread.
LumaImage enlarge(const LumaView &picture, int factor);

} // namespace quillmark
