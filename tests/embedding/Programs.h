// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TempDir.h"

#include <filesystem>
#include <string_view>

namespace quillmark::test {

/// Writes a script that this user may execute and gives its path.
inline std::filesystem::path writeProgram(const TempDir &folder, const std::filesystem::path &name,
                                          std::string_view script)
{
    std::filesystem::path file = folder.write(name, script);
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
}

} // namespace quillmark::test
