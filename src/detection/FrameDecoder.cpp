// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"

#include "detection/FrameDecoding.h"
#include "detection/LumaRows.h"
#include "detection/TiffLuma.h"
#include "detection/TiffOrientation.h"

#include <memory>
#include <optional>

namespace quillmark {
namespace {

std::optional<DecodedFrame> decodeJpeg(const FrameFile &file)
{
    return decodeScans(file, [](JpegFrame &frame) -> std::optional<DecodedFrame> {
        LumaRows rows(frame.width(), frame.height());
        if (!frame.readLuma(rows)) {
            return std::nullopt;
        }
        return DecodedFrame{rows.finish(), frame.orientation()};
    });
}

std::optional<DecodedFrame> decodeTiff(const FrameFile &file)
{
    const std::unique_ptr<TiffFrame> frame = TiffFrame::open(file, FrameChannels::luma);
    if (!frame) {
        return std::nullopt;
    }
    LumaRows rows(frame->width(), frame->height());
    if (!TiffLuma(*frame, rows).read()) {
        return std::nullopt;
    }
    return DecodedFrame{rows.finish(), tiffOrientation(file)};
}

} // namespace

DecodedFrame decodeFrame(const std::filesystem::path &file)
{
    return decodeByFormat(file, {}, decodeJpeg, decodeTiff);
}

} // namespace quillmark
