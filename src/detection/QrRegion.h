// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"
#include "detection/QrSymbol.h"

#include <vector>

namespace quillmark {

/// Reads the code of a triangle of finder marks, both in pixels of the frame: the part of
/// the frame around it is copied in sizes and sharpnesses that suit the decoder until one
/// gives a text. Gives every code read on that copy, with corners in pixels of the frame;
/// or one without text where there surely is a code that was not understood; or nothing.
/// Takes up to 24 million bytes for a while. Never throws; any thread.
std::vector<QrSymbol> readRegion(const LumaView &frame, const FinderTriangle &triangle) noexcept;

} // namespace quillmark
