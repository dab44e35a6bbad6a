// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "fuzz/Frame.h"

#include "detection/FrameScan.h"
#include "detection/LumaDecoding.h"
#include "detection/PictureDecoder.h"
#include "detection/QrReader.h"
#include "fuzz/MemoryFile.h"

#include <cstdint>
#include <optional>

namespace quillmark::fuzz {
namespace {

constexpr std::int64_t mostPixels = 2'000'000;
constexpr std::int64_t mostPixelsSearched = 5000;

/// Nothing where it is refused, or too large.
std::optional<DecodedFrame> smallFrame(const std::filesystem::path &file)
{
    std::optional<DecodedFrame> frame;
    try {
        decodeLuma(file, [&frame](const LumaSource &source) {
            require(source.width > 0 && source.height > 0, "an open frame has a size");
            if (std::int64_t{source.width} * source.height > mostPixels) {
                return false;
            }
            LumaRows rows(source.width, source.height);
            if (!source.read(rows)) {
                return false;
            }
            frame = {rows.finish(), source.orientation()};
            return true;
        });
    } catch (const SlateDetectionError &error) {
        require(error.which() == SlateDetectionError::Case::imageDecodeFailed,
                "a refused file is one that cannot be decoded");
        require(!frame, "what was read is not refused");
    }
    return frame;
}

} // namespace

void readFrame(Bytes bytes)
{
    const MemoryFile file(bytes);
    const std::optional<DecodedFrame> frame = smallFrame(file.path());
    if (!frame) {
        return;
    }
    const LumaImage &luma = frame->luma;
    require(luma.pixels.size() ==
                static_cast<std::size_t>(luma.width) * static_cast<std::size_t>(luma.height),
            "a frame has all its pixels");

    // Throws where the two do not agree on what can be read.
    const PictureSize box{40, 30};
    const PictureImage picture = decodePicture(file.path(), box);
    const bool turned = swapsSides(frame->orientation);
    require(fittedSize({turned ? luma.height : luma.width, turned ? luma.width : luma.height},
                       box) == PictureSize{picture.width, picture.height},
            "a picture has the frame's proportions");

    if (std::int64_t{luma.width} * luma.height <= mostPixelsSearched) {
        require(scanFrame(file.path()) == readQrCodes(luma, frame->orientation),
                "codes are the same while a frame is decoded and afterwards");
    }
}

} // namespace quillmark::fuzz
