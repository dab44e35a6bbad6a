// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"

#include <cstdint>

namespace quillmark {

/// The orientation in the first directory of a TIFF file, big or small, of either byte order:
/// any number that fits, whether or not it has a meaning (libtiff gives only those that
/// have); 1 where there is none or it is not a whole number.
std::uint32_t tiffOrientation(const FrameFile &file);

} // namespace quillmark
