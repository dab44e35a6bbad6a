// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>

#include <filesystem>

namespace quillmark {

/// Reads a picture for looking at: upright, and no longer than maxSide pixels on either side.
/// TIFF files are shown in grey. Nothing (a null image) where the file is no picture, or one
/// that would take too much memory. Blocks; any thread.
QImage readPicture(const std::filesystem::path &file, int maxSide);

} // namespace quillmark
