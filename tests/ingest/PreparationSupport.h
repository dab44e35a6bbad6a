// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ingest/FileError.h"
#include "ingest/Ingestor.h"
#include "support/TempDir.h"

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmark::test {

namespace fs = std::filesystem;
using Paths = std::vector<fs::path>;

/// Everything below a folder, hidden entries included, as paths from it.
inline std::vector<std::string> contents(const fs::path &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        names.push_back(entry.path().lexically_relative(folder).native());
    }
    return names;
}

/// The failure that a preparation ends with.
inline FileError failureOf(const Paths &files, const fs::path &folder, BackupMode mode)
{
    try {
        Ingestor::prepareFiles(files, folder, mode);
    } catch (const FileError &error) {
        return error;
    }
    throw std::logic_error("preparation did not fail");
}

} // namespace quillmark::test
