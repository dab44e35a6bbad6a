// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SlateDetectionError.h"
#include "payload/SlatePayload.h"

#include <QCoro/QCoroTask>
#include <QString>

#include <filesystem>
#include <optional>
#include <vector>

namespace quillmark {

/// A slate and where it was found.
struct SlateDetection {
    std::filesystem::path file;
    SlatePayload payload;
    QString raw; ///< the QR code's text exactly as read; empty where a person typed the payload
};

/// Finds the slate among the scans of a roll. Stateless; any thread.
namespace SlateDetector {

/// Lists the entries of a folder whose names end in .jpg, .jpeg, .tif or .tiff (in any
/// letter case), as absolute paths in ascending order of their full path's code points
/// after canonical composition (NFC).
///
/// Only names decide: a directory named x.jpg is listed too. Hidden entries are neither
/// listed nor entered; symbolic links are listed but never followed. What cannot be read
/// is passed over, down to an empty list for a folder that cannot be walked. Blocks.
std::vector<std::filesystem::path> enumerateImages(const std::filesystem::path &in, bool recursive);

/// Reads the slate on one image, on a background worker; nothing where the image holds
/// none. Throws SlateDetectionError (imageDecodeFailed).
QCoro::Task<std::optional<SlateDetection>> detect(std::filesystem::path in);

/// Reads the images of a folder one after another, in the order of enumerateImages, on a
/// background worker, up to the first that holds a slate; images that cannot be read
/// count as holding none. Throws SlateDetectionError (noImagesFound, noSlateFound).
QCoro::Task<SlateDetection> detectInFolder(std::filesystem::path folder, bool recursive);

} // namespace SlateDetector
} // namespace quillmark
