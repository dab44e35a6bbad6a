// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SlateDetector.h"
#include "ingest/BackupMode.h"

#include <filesystem>
#include <vector>

namespace quillmark {

/// What a run will do.
struct IngestPlan {
    std::filesystem::path folder; ///< the root of the ingest; output folders are made in it
    SlateDetection detection;     ///< whose payload is written into every file
    std::vector<std::filesystem::path> rollFiles; ///< the slate frame included; may be empty
    BackupMode backupMode = BackupMode::backupOriginals;
};

/// What a run did.
struct IngestOutcome {
    IngestPlan plan;                            ///< as it was run
    std::vector<std::filesystem::path> mutated; ///< the files written, in the order of rollFiles
    std::vector<std::filesystem::path> backups; ///< the copies in _originals, in that order
};

} // namespace quillmark
