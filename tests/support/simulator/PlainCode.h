// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "support/simulator/QrMatrix.h"

namespace quillmark::test {

/// A code as a generator saves it: black on white, a whole number of pixels to a module,
/// with a quiet zone of so many modules around it.
LumaImage drawCode(const QrMatrix &code, int modulePixels, int quietModules = 4);

/// A picture's pixels as a camera stores them that marks its file with the given
/// orientation (1 to 8, TIFF 6.0 tag 274): turned and mirrored so that the reader of the
/// file has to undo it.
LumaImage storedWithOrientation(const LumaImage &upright, int orientation);

/// Light and dark exchanged.
LumaImage negativeOf(LumaImage image);

/// Pictures of the same height side by side.
LumaImage sideBySide(const LumaImage &left, const LumaImage &right);

} // namespace quillmark::test
