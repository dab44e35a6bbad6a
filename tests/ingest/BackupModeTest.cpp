// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/BackupMode.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

TEST(BackupMode, rawValuesMatchExactly)
{
    for (const BackupMode mode : allBackupModes) {
        EXPECT_EQ(backupModeFromRawValue(rawValue(mode)), mode);
    }
    EXPECT_EQ(rawValue(BackupMode::backupOriginals), QStringLiteral("backup-originals"));
    EXPECT_EQ(rawValue(BackupMode::writeCopies), QStringLiteral("write-copies"));
    EXPECT_EQ(rawValue(BackupMode::none), QStringLiteral("none"));
    for (const char16_t *text : {u"", u"None", u"backup_originals", u"write-copies ", u"nonee"}) {
        EXPECT_FALSE(backupModeFromRawValue(QString::fromUtf16(text)).has_value());
    }
}

} // namespace
} // namespace quillmark::test
