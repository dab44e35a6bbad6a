// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/SlateFrame.h"

#include <filesystem>

namespace quillmark::test {

enum class FrameFormat { none, jpeg, tiff };

/// The file that a frame is kept in.
struct FrameFile {
    FrameFormat format = FrameFormat::none; ///< `none`: straight to grey pixels
    int quality = 90;                       ///< of a JPEG
    int bits = 16;                          ///< a sample of a TIFF
    bool infrared = false;                  ///< a fourth channel in a TIFF
};

/// Throws std::runtime_error where the file cannot be written, and std::invalid_argument for
/// a file without a format.
void writeStored(const std::filesystem::path &path, const SimulatedFrame &frame,
                 const FrameFile &file);

/// The frame's luma as the program decodes it from such a file, or as it is rendered where
/// there is none. The file is a temporary one. Throws as writeStored.
LumaImage storedLuma(const SimulatedFrame &frame, const FrameFile &file);

} // namespace quillmark::test
