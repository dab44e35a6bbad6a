// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ImageFiles.h"

#include <QByteArray>

#include <filesystem>
#include <vector>

namespace quillmark::test {

/// A small frame that holds a QR code for each of the texts, side by side; a plain
/// photograph where there are none.
RasterImage renderFrame(const std::vector<QByteArray> &codes);

/// Writes such a frame, as JPEG or TIFF by its name's extension (in any letter case), and
/// gives the file's path.
std::filesystem::path writeFrame(const std::filesystem::path &file,
                                 const std::vector<QByteArray> &codes = {});

} // namespace quillmark::test
