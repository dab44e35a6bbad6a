// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SlateDetectionError.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace quillmark {

/// One 8-bit grey picture: height rows of width pixels, packed, top row first;
/// 0 is black. Rows and columns are as stored in the file, before any orientation.
struct LumaImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    const std::uint8_t *row(int y) const
    {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
    std::uint8_t *row(int y)
    {
        return pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    }
};

/// A frame as it came from the scanner.
struct DecodedFrame {
    LumaImage luma;
    /// The stored EXIF/TIFF orientation as it is (1 to 8 have a meaning); 1 where none is stored.
    std::uint32_t orientation = 1;
};

/// Decodes the first image of a JPEG or TIFF file, told apart by their content, to luma at
/// full resolution. A file that is cut short or damaged is read as far as it goes, and the
/// rest is mid-grey.
///
/// Throws SlateDetectionError (imageDecodeFailed) for a file that is neither, of which
/// nothing decodes, or that declares more than a gigapixel. Blocks; any thread but the
/// main one; holds no more memory than the frame needs.
DecodedFrame decodeFrame(const std::filesystem::path &file);

} // namespace quillmark
