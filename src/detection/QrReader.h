// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace quillmark {

/// Finds and reads the QR codes on a frame: upright, turned or mirrored, dark on light or
/// light on dark. Gives every code found, in the order found, with its text, or without
/// one where the code was seen but not understood. No other symbology is looked for.
///
/// Byte segments without a declared character set are UTF-8 where they are valid UTF-8.
/// `orientation` is the frame's EXIF orientation; anything outside 1 to 8 counts as upright.
/// Blocks; any thread.
std::vector<std::optional<QString>> readQrCodes(const LumaImage &luma, std::uint32_t orientation);

} // namespace quillmark
