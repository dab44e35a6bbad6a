// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ingest/BackupMode.h"

#include <filesystem>
#include <vector>

namespace quillmark {

/// What preparation made of a run's files.
struct PreparedFiles {
    std::vector<std::filesystem::path> mutated; ///< the files to write into, in input order
    std::vector<std::filesystem::path> backups; ///< the backup copies made, in input order
};

/// Puts originals in safety. Stateless.
namespace Ingestor {

/// Carries out the backup mode on disk: copies the files into `in`/_originals or
/// `in`/_tagged, flat, replacing what an earlier run left there, or does nothing. Copies are
/// real files (links are followed), keep permissions and modification time, and are on disk
/// (file and folder synchronised) when this returns, because the originals are rewritten next.
///
/// Throws FileError for the first operation that fails; copies made until then stay. A
/// source that is its own destination fails before anything is removed or copied. Blocks;
/// any thread but the main one.
PreparedFiles prepareFiles(const std::vector<std::filesystem::path> &files,
                           const std::filesystem::path &in, BackupMode mode);

} // namespace Ingestor
} // namespace quillmark
