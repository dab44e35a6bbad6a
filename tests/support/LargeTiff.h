// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <filesystem>

namespace quillmark::test {

/// Writes a black TIFF picture of 48 bits a pixel, all in one strip without compression. Its
/// pixels are a hole in the file: of any size, it takes no room on the disk and no time to
/// make. Throws std::runtime_error or std::filesystem::filesystem_error.
void writeLargeTiff(const std::filesystem::path &file, std::uint32_t width, std::uint32_t height);

} // namespace quillmark::test
