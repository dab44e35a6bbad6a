// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaRows.h"

#include <cstdint>
#include <filesystem>
#include <functional>

namespace quillmark {

/// A frame that is open and about to be decoded.
struct LumaSource {
    int width;
    int height;
    /// Decodes the frame as far as it goes, from the top, telling of the rows that are final.
    /// False where there is not one.
    std::function<bool(LumaRows &)> read;
    /// As it is stored; to be called after `read`.
    std::function<std::uint32_t()> orientation;
};

/// Opens the first image of a JPEG or TIFF file, told apart by their content, and hands it to
/// `take`, which reads it and tells whether there was a picture. Where there was none, `take`
/// may be called again with what else the file has to offer.
///
/// Throws SlateDetectionError (imageDecodeFailed) where there was no picture in the end, or
/// memory did not suffice; and everything else that `take` throws.
void decodeLuma(const std::filesystem::path &file,
                const std::function<bool(const LumaSource &)> &take);

} // namespace quillmark
