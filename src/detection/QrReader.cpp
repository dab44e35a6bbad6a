// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrReader.h"

#include "detection/FrameSearch.h"
#include "detection/LumaView.h"

#include <exception>

namespace quillmark {

// A code is the same code whichever way the frame lies, and the decoder reads it turned and
// mirrored: the orientation changes nothing.
std::vector<std::optional<QString>> readQrCodes(const LumaImage &luma,
                                                [[maybe_unused]] std::uint32_t orientation)
{
    const LumaView frame(luma);
    if (frame.isEmpty()) {
        return {};
    }
    FrameSearch search(frame);
    try {
        search.run();
    } catch (const std::exception &) {
        // Out of memory: what was found until here is what was found.
    }
    return search.symbols().texts();
}

} // namespace quillmark
