// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QImage>
#include <QSize>

#include <filesystem>
#include <stop_token>

namespace quillmark {

/// Reads a picture for looking at: in colour, upright, and scaled down to fit `largest` (in
/// pixels, both sides above 0), never up. Nothing (a null image) where the file is no
/// picture, or one that would take too much memory. After a stop was asked for, a JPEG or
/// TIFF file comes to nothing soon. Blocks; any thread.
QImage readPicture(const std::filesystem::path &file, QSize largest,
                   const std::stop_token &stop = {});

} // namespace quillmark
