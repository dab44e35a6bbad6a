// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrReader.h"

#include "detection/FrameSearch.h"
#include "detection/LumaView.h"

namespace quillmark {

// A code is the same code whichever way the frame lies, and the decoder reads it turned and
// mirrored: the orientation changes nothing.
std::vector<std::optional<QString>> readQrCodes(const LumaImage &luma,
                                                [[maybe_unused]] std::uint32_t orientation)
{
    return searchFrame(luma).texts();
}

} // namespace quillmark
