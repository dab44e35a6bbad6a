// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SlateDetector.h"

#include "base/Background.h"
#include "detection/FrameScan.h"
#include "detection/SlateDetectionError.h"
#include "payload/SlatePayloadJson.h"

namespace quillmark::SlateDetector {
namespace {

namespace fs = std::filesystem;

std::optional<SlateDetection> detectNow(const fs::path &image)
{
    for (const std::optional<QString> &text : scanFrame(image)) {
        if (!text) {
            continue;
        }
        try {
            return SlateDetection{image, decodeSlatePayload(*text), *text};
        } catch (const SlateDecodeError &) {
            continue; // some other code; the slate may be beside it
        }
    }
    return std::nullopt;
}

SlateDetection detectInFolderNow(const fs::path &folder, bool recursive)
{
    const std::vector<fs::path> images = enumerateImages(folder, recursive);
    if (images.empty()) {
        throw SlateDetectionError::noImagesFound();
    }
    for (const fs::path &image : images) {
        try {
            if (std::optional<SlateDetection> detection = detectNow(image)) {
                return *std::move(detection);
            }
        } catch (const std::exception &) {
            continue; // a frame that cannot be read holds no slate
        }
    }
    throw SlateDetectionError::noSlateFound(static_cast<qint64>(images.size()));
}

} // namespace

QCoro::Task<std::optional<SlateDetection>> detect(fs::path in)
{
    return runInBackground(&detectNow, std::move(in));
}

QCoro::Task<SlateDetection> detectInFolder(fs::path folder, bool recursive)
{
    return runInBackground(&detectInFolderNow, std::move(folder), recursive);
}

} // namespace quillmark::SlateDetector
