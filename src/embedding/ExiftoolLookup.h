// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace quillmark {

/// The exiftool inside the bundle (exiftool/exiftool), else the first of the usual places,
/// given in their order, that this user may execute. Only regular files count, reached
/// through symbolic links or not. Any thread.
std::optional<std::filesystem::path>
locateExiftool(const std::optional<std::filesystem::path> &bundle,
               const std::vector<std::filesystem::path> &usualPlaces);

/// quillmark.config in the bundle, else in the application's own folder. Any thread.
std::optional<std::filesystem::path>
findConfiguration(const std::optional<std::filesystem::path> &bundle,
                  const std::filesystem::path &applicationFolder);

} // namespace quillmark
