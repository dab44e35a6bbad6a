// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"

namespace quillmark {

/// Sharpens a picture in place with an unsharp mask: each pixel moves away from the mean
/// of its 5 x 5 neighbourhood (binomial weights, a deviation of one pixel) by `quarters`
/// quarters of its distance; 1 to 16. Takes the memory of a few rows. Any thread.
void sharpen(LumaImage &image, int quarters);

/// Exchanges light and dark in place. Any thread.
void invert(LumaImage &image);

} // namespace quillmark
