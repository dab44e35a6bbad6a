// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <array>
#include <optional>

namespace quillmark {

/// How the scans are protected before metadata is written.
enum class BackupMode {
    backupOriginals, ///< each file is copied into _originals, then tagged itself
    writeCopies,     ///< each file is copied into _tagged, and the copy is tagged
    none,            ///< the files are tagged as they are
};

/// Every mode, in the order in which they are offered.
inline constexpr std::array allBackupModes{BackupMode::backupOriginals, BackupMode::writeCopies,
                                           BackupMode::none};

/// The mode's stable name: "backup-originals", "write-copies" or "none".
QString rawValue(BackupMode mode);

/// The mode of that exact name, or nothing.
std::optional<BackupMode> backupModeFromRawValue(const QString &text);

} // namespace quillmark
