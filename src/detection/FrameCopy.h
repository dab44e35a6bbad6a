// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "detection/QrDecode.h"
#include "detection/QrSymbol.h"

#include <vector>

namespace quillmark {

/// A copy of a frame or of a part of it, made for the decoder to look at.
struct FrameCopy {
    LumaImage image;
    double scale = 1; ///< pixels of the frame to one pixel of the copy
    double left = 0;  ///< where the copy's top left corner lies on the frame
    double top = 0;

    PixelPoint toFrame(PixelPoint onCopy) const
    {
        return {left + onCopy.x * scale, top + onCopy.y * scale};
    }
};

/// Which codes a look is for.
enum class Polarity { darkOnLight, lightOnDark, both };

/// Reads the codes on a copy; corners are in pixels of the frame. Large copies are read in
/// both polarities at the same time, on a second thread. Takes up to three bytes for a
/// pixel of the copy more than the copy. Gives what it could where memory is short; never
/// throws.
std::vector<QrSymbol> readCopy(FrameCopy copy, Polarity polarity, QrEffort effort) noexcept;

} // namespace quillmark
