// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "fuzz/Target.h"

namespace quillmark::fuzz {

/// Decodes the bytes of an image file to luma, to a picture for looking at, and while it is
/// searched for codes, and requires that the three agree. A frame of more than some megapixels
/// is opened only, since it takes its time whatever is in it.
void readFrame(Bytes file);

} // namespace quillmark::fuzz
