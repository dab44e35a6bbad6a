// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/BackupMode.h"

#include <algorithm>

namespace quillmark {

QString rawValue(BackupMode mode)
{
    switch (mode) {
    case BackupMode::backupOriginals:
        return QStringLiteral("backup-originals");
    case BackupMode::writeCopies:
        return QStringLiteral("write-copies");
    case BackupMode::none:
        return QStringLiteral("none");
    }
    Q_UNREACHABLE();
}

std::optional<BackupMode> backupModeFromRawValue(const QString &text)
{
    const auto *const found =
        std::find_if(allBackupModes.begin(), allBackupModes.end(),
                     [&text](BackupMode mode) { return rawValue(mode) == text; });
    if (found == allBackupModes.end()) {
        return std::nullopt;
    }
    return *found;
}

} // namespace quillmark
