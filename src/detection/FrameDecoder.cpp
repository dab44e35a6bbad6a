// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"

#include "detection/FrameDecoding.h"
#include "detection/LumaDecoding.h"
#include "detection/LumaRows.h"
#include "detection/TiffLuma.h"
#include "detection/TiffOrientation.h"

#include <memory>
#include <optional>
#include <utility>

namespace quillmark {

void decodeLuma(const std::filesystem::path &path,
                const std::function<bool(const LumaSource &)> &take)
{
    const auto taken = [&take](const LumaSource &source) {
        return take(source) ? std::optional(true) : std::nullopt;
    };
    const auto fromJpeg = [&taken](const FrameFile &file) {
        return decodeScans(file, [&taken](JpegFrame &frame) {
            return taken({frame.width(), frame.height(),
                          [&frame](LumaRows &rows) { return frame.readLuma(rows); },
                          [&frame] { return frame.orientation(); }});
        });
    };
    const auto fromTiff = [&taken](const FrameFile &file) -> std::optional<bool> {
        const std::unique_ptr<TiffFrame> frame = TiffFrame::open(file, FrameChannels::luma);
        if (!frame) {
            return std::nullopt;
        }
        return taken({frame->width(), frame->height(),
                      [&frame](LumaRows &rows) { return TiffLuma(*frame, rows).read(); },
                      [&file] { return tiffOrientation(file); }});
    };
    decodeByFormat(path, {}, fromJpeg, fromTiff);
}

DecodedFrame decodeFrame(const std::filesystem::path &file)
{
    DecodedFrame frame;
    decodeLuma(file, [&frame](const LumaSource &source) {
        LumaRows rows(source.width, source.height);
        if (!source.read(rows)) {
            return false;
        }
        frame = {rows.finish(), source.orientation()};
        return true;
    });
    return frame;
}

} // namespace quillmark
