// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace quillmark::test {

/// The decoded samples of a JPEG file or of all pages of a TIFF file, in the order in which
/// the library gives them. Throws std::runtime_error where the file cannot be decoded.
std::string jpegPixels(const std::filesystem::path &file);
std::string tiffPixels(const std::filesystem::path &file);

} // namespace quillmark::test
