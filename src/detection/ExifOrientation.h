// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>

namespace quillmark {

/// The orientation in an EXIF block as a JPEG file holds it in an APP1 segment, the
/// identifier "Exif" in front: any number that fits, whether or not it has a meaning;
/// 1 where there is none or it is not a whole number.
std::uint32_t exifOrientation(std::span<const unsigned char> block);

} // namespace quillmark
