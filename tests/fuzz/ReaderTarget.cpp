// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrReader.h"
#include "fuzz/Target.h"

namespace quillmark::fuzz {
namespace {

constexpr int mostSide = 512;

/// The first bytes are the width (two of them, the high one first) and the orientation; what
/// follows are the rows, as many as there are.
void readCodes(Bytes bytes)
{
    constexpr std::size_t headBytes = 3;
    if (bytes.size() <= headBytes) {
        return;
    }
    const int width = (bytes[0] << 8 | bytes[1]) % mostSide + 1;
    const std::uint32_t orientation = bytes[2];
    const Bytes pixels = bytes.subspan(headBytes);
    LumaImage image;
    image.width = width;
    image.height = static_cast<int>(pixels.size()) / width;
    if (image.height == 0) {
        return;
    }
    image.pixels.assign(pixels.begin(), pixels.begin() + std::ptrdiff_t{width} * image.height);
    for (const std::optional<QString> &code : readQrCodes(image, orientation)) {
        require(!code || code->isValidUtf16(), "the text of a code is Unicode");
    }
}

} // namespace
} // namespace quillmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const quillmark::fuzz::TimeLimit limit;
    quillmark::fuzz::readCodes({data, size});
    return 0;
}
