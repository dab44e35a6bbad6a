// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"

#include "detection/FrameFile.h"
#include "detection/JpegFrame.h"
#include "detection/LumaRows.h"
#include "detection/SampleLevels.h"
#include "detection/SampleLuma.h"
#include "detection/SlateDetectionError.h"
#include "detection/TiffFrame.h"
#include "detection/TiffOrientation.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <utility>

namespace quillmark {
namespace {

/// How many pixels levels are found from, at most and roughly.
constexpr std::int64_t levelPixels = 2'000'000;

std::optional<DecodedFrame> decodeJpeg(const FrameFile &file)
{
    int scanLimit = JpegFrame::maximumScans;
    for (;;) {
        JpegFrame frame(file, scanLimit);
        if (!frame.readHeader()) {
            return std::nullopt;
        }
        LumaRows rows(frame.width(), frame.height());
        if (frame.readLuma(rows)) {
            return DecodedFrame{rows.finish(), frame.orientation()};
        }
        // Damage between two scans leaves nothing to go on with, so all that came before is
        // decoded once more, and only that.
        if (frame.completedScans() == 0 || frame.completedScans() >= scanLimit) {
            return std::nullopt;
        }
        scanLimit = frame.completedScans();
    }
}

Levels findLevels(TiffFrame &frame, const SampleLuma &luma)
{
    LevelSampler sampler(nominalWhite(frame.layout().type));
    const std::int64_t pixels = std::int64_t{frame.width()} * frame.height();
    const int step = static_cast<int>(pixels / levelPixels + 1);
    int first = 0;
    frame.visitSome([&](const SampleRow &row) {
        luma.sample(row.samples, row.count, first, step, sampler);
        // Not the same columns in every row: one of them may be defective. Any large prime
        // does.
        first = (first + 7919) % step;
    });
    return std::move(sampler).levels();
}

std::optional<DecodedFrame> decodeTiff(const FrameFile &file)
{
    const std::unique_ptr<TiffFrame> frame = TiffFrame::open(file);
    if (!frame) {
        return std::nullopt;
    }
    SampleLuma luma(frame->layout());
    if (luma.isDeep()) {
        luma.setLevels(findLevels(*frame, luma));
    }
    LumaRows rows(frame->width(), frame->height());
    bool decoded = false;
    frame->visitAll([&](const SampleRow &row) {
        luma.convert(row.samples, row.count, rows.rows(row.y, 1) + row.x);
        decoded = true;
    });
    if (!decoded) {
        return std::nullopt;
    }
    return DecodedFrame{rows.finish(), tiffOrientation(file)};
}

std::optional<DecodedFrame> decode(const std::filesystem::path &path)
{
    const std::optional<FrameFile> file = FrameFile::open(path);
    if (!file) {
        return std::nullopt;
    }
    switch (file->format()) {
    case FrameFormat::jpeg:
        return decodeJpeg(*file);
    case FrameFormat::tiff:
        return decodeTiff(*file);
    case FrameFormat::unknown:
        break;
    }
    return std::nullopt;
}

} // namespace

DecodedFrame decodeFrame(const std::filesystem::path &file)
{
    try {
        if (std::optional<DecodedFrame> frame = decode(file)) {
            return std::move(*frame);
        }
    } catch (const std::bad_alloc &) {
        // A frame that does not fit is one that cannot be decoded.
    }
    throw SlateDetectionError::imageDecodeFailed(file);
}

} // namespace quillmark
