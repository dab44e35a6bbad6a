// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/BackupModeText.h"

#include "ingest/BackupMode.h"

namespace quillmark {

QString BackupModeText::title() const
{
    const auto mode = backupModeFromRawValue(m_rawValue);
    if (!mode) {
        return {};
    }
    switch (*mode) {
    case BackupMode::backupOriginals:
        return QStringLiteral("BACKUP ORIGINALS");
    case BackupMode::writeCopies:
        return QStringLiteral("WRITE COPIES");
    case BackupMode::none:
        return QStringLiteral("IN PLACE");
    }
    return {};
}

QString BackupModeText::description() const
{
    const auto mode = backupModeFromRawValue(m_rawValue);
    if (!mode) {
        return {};
    }
    switch (*mode) {
    case BackupMode::backupOriginals:
        return QStringLiteral("Originals are copied to _originals/ before metadata is written. "
                              "Recommended.");
    case BackupMode::writeCopies:
        return QStringLiteral("Tagged copies are written to _tagged/. Originals are never "
                              "touched.");
    case BackupMode::none:
        return QStringLiteral("Files are mutated in place. Fastest, no extra disk \u2014 but "
                              "originals are gone.");
    }
    return {};
}

} // namespace quillmark
