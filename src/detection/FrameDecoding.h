// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"
#include "detection/JpegFrame.h"
#include "detection/SampleConverter.h"
#include "detection/SlateDetectionError.h"
#include "detection/TiffFrame.h"

#include <cstdint>
#include <filesystem>
#include <new>
#include <optional>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace quillmark {

// What the decoding to luma and that to colours have in common.

/// Calls `fromJpeg` or `fromTiff` with the opened file, whichever its content asks for, and
/// gives what that gives. Throws SlateDetectionError (imageDecodeFailed) where the file is
/// neither, where the result is nothing, where memory does not suffice, or where a stop was
/// asked for.
template <typename FromJpeg, typename FromTiff>
auto decodeByFormat(const std::filesystem::path &path, const std::stop_token &stop,
                    const FromJpeg &fromJpeg, const FromTiff &fromTiff)
{
    try {
        if (std::optional<FrameFile> file = FrameFile::open(path)) {
            file->endAt(stop);
            std::invoke_result_t<FromJpeg, const FrameFile &> result;
            if (const FrameFormat format = file->format(); format == FrameFormat::jpeg) {
                result = fromJpeg(*file);
            } else if (format == FrameFormat::tiff) {
                result = fromTiff(*file);
            }
            if (result && !stop.stop_requested()) {
                return std::move(*result);
            }
        }
    } catch (const std::bad_alloc &) {
        // A frame that does not fit is one that cannot be decoded.
    }
    throw SlateDetectionError::imageDecodeFailed(path);
}

/// Calls `read` with a JPEG frame whose header is read, and gives what that gives. Damage
/// between two scans leaves nothing to go on with, so where there is no result, all scans that
/// came before are decoded once more, and only those.
template <typename Read>
auto decodeScans(const FrameFile &file, const Read &read)
{
    int scanLimit = JpegFrame::maximumScans;
    for (;;) {
        std::invoke_result_t<Read, JpegFrame &> result;
        JpegFrame frame(file, scanLimit);
        if (!frame.readHeader()) {
            return result;
        }
        result = read(frame);
        if (result || frame.completedScans() == 0 || frame.completedScans() >= scanLimit) {
            return result;
        }
        scanLimit = frame.completedScans();
    }
}

/// Sets the levels of deep samples from some of the frame's rows.
template <typename Output>
void findLevels(TiffFrame &frame, SampleConverter<Output> &converter)
{
    if (!converter.isDeep()) {
        return;
    }
    // From how many samples, at most and roughly.
    constexpr std::int64_t levelSamples = 2'000'000;
    LevelSampler sampler(nominalWhite(frame.layout().type));
    const std::int64_t samples = std::int64_t{frame.width()} * frame.height() * Output::channels;
    const int step = static_cast<int>(samples / levelSamples + 1);
    int first = 0;
    frame.visitSome([&](const SampleRow &row) {
        converter.sample(row.samples, row.count, first, step, sampler);
        // Not the same columns in every row: one of them may be defective. Any large prime
        // does.
        first = (first + 7919) % step;
    });
    converter.setLevels(std::move(sampler).levels());
}

} // namespace quillmark
