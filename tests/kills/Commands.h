// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ingest/BackupMode.h"

#include <QByteArray>

#include <filesystem>

namespace quillmark::kills {

/// Fills a folder with 36 JPEG and TIFF files of many kinds, small and of medium size, some
/// with names that need care, and the last three in a folder with an image's name. One of them
/// shows the payload, as JSON, on a slate. No two have the same pixels. Throws std::runtime_error
/// where a file cannot be written.
void makeRoll(const std::filesystem::path &folder, const QByteArray &payload);

/// Makes an ingest of a folder as the window does, and prints a line as it comes to each
/// state: "scanning", "ready COUNT", "writing", and in the end "done COUNT" or "error TEXT"
/// (line breaks as spaces). Then it waits until its standard input is closed, as a window
/// waits for its user. Gives the exit status: 0 after "done", else 1.
int runIngest(const std::filesystem::path &folder, BackupMode mode);

/// Prints a line for a JPEG or TIFF file: the SHA-256 of its decoded samples in hexadecimal
/// digits, or "unreadable" and why.
void printPixelHash(const std::filesystem::path &file);

} // namespace quillmark::kills
