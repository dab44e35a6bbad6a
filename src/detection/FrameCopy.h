// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "detection/QrDecode.h"
#include "detection/QrSymbol.h"

#include <vector>

namespace quillmark {

/// A copy of a frame in another size, made for the decoder to look at.
struct FrameCopy {
    LumaImage image;
    double scale = 1; ///< pixels of the frame to one pixel of the copy
};

/// Reads the codes of both polarities on a copy; corners are in pixels of the frame. Large
/// copies are read in both polarities at the same time, on a second thread. Takes up to three
/// bytes for a pixel of the copy more than the copy. Gives what it could where memory is
/// short; never throws.
std::vector<QrSymbol> readCopy(const FrameCopy &copy, QrEffort effort) noexcept;

} // namespace quillmark
