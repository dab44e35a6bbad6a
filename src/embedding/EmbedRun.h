// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "payload/SlatePayload.h"

#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// What an embedding stands on; either may be missing.
struct ExiftoolSetup {
    std::optional<std::filesystem::path> program;
    std::optional<std::filesystem::path> configuration;
};

/// The absolute paths of files as text. Of that there may be megabytes, and a path takes memory for
/// each of its components beside.
std::vector<std::string> absoluteNames(const std::vector<std::filesystem::path> &files);

/// Everything that exiftool is called with, as the bytes that it receives: the fixed
/// options, the tag assignments and the files.
///
/// Texts become UTF-8. Files are absolute names: one called "-x" or "@x" is never taken for an
/// option.
std::vector<std::string> embedArguments(const std::filesystem::path &configuration,
                                        const QStringList &tagArguments,
                                        const std::vector<std::string> &files);

/// Writes the payload into all the files with one exiftool, blocking until it has ended.
/// Throws ExiftoolError, also before anything runs where a text of the payload holds U+0000, or
/// std::system_error where exiftool cannot be started. Any thread.
void runEmbed(const ExiftoolSetup &setup, const std::vector<std::filesystem::path> &files,
              const SlatePayload &payload, const QString &generatorVersion);

} // namespace quillmark
