// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "manual/LastUsedPayloadStore.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSettings>
#include <QSysInfo>

#include <fstream>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

/// Gives the settings of this process a folder of their own. QSettings looks at the
/// environment once, so the folder is one for all cases, and each starts by emptying it.
class LastUsedPayloadStore : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static const test::TempDir folder;
        home = folder.path();
        ::setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    }
    void SetUp() override { fs::remove_all(file()); }

    static fs::path file() { return home / "Larkhollow" / "Quillmark.conf"; }
    static void storeRaw(const QVariant &value)
    {
        QSettings settings(QString::fromStdString(file().string()), QSettings::NativeFormat);
        settings.setValue(QStringLiteral("co.larkhollow.quillmark.lastManualPayload.v2"), value);
    }

    inline static fs::path home;
};

TEST_F(LastUsedPayloadStore, isAbsentBeforeAnythingWasSaved)
{
    EXPECT_FALSE(quillmark::LastUsedPayloadStore::load().has_value());
}

TEST_F(LastUsedPayloadStore, keepsTheLastPayload)
{
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    quillmark::LastUsedPayloadStore::save(test::fullPayload());
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), test::fullPayload());
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), test::minimalPayload());
}

TEST_F(LastUsedPayloadStore, isOnDiskWhenSaveReturns)
{
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    EXPECT_NE(test::readFile(file()).find("Nova 400"), std::string::npos);
}

TEST_F(LastUsedPayloadStore, doesNotJudgeTheVersion)
{
    SlatePayload payload = test::minimalPayload();
    payload.version = 7;
    quillmark::LastUsedPayloadStore::save(payload);
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), payload);
}

TEST_F(LastUsedPayloadStore, faultyEntryIsAbsentAndStays)
{
    const QVariant faulty[] = {QByteArray("no json"), QByteArray("{\"version\":2}"),
                               QStringLiteral("a text, not data")};
    for (const QVariant &value : faulty) {
        storeRaw(value);
        const std::string before = test::readFile(file());
        EXPECT_FALSE(quillmark::LastUsedPayloadStore::load().has_value());
        EXPECT_EQ(test::readFile(file()), before);
    }
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), test::minimalPayload());
}

/// A lock of the settings that its holder has not taken away.
std::string lockOf(qint64 process)
{
    const QString text = QStringLiteral("%1\n%2\n%3\n\n\n")
                             .arg(process)
                             .arg(QCoreApplication::applicationName(), QSysInfo::machineHostName());
    return text.toStdString();
}

TEST_F(LastUsedPayloadStore, aLockThatThisProcessLeftBehindHoldsNothingUp)
{
    fs::create_directories(file().parent_path());
    const fs::path lock = file().string() + ".lock";
    std::ofstream(lock) << lockOf(QCoreApplication::applicationPid());
    quillmark::LastUsedPayloadStore::save(test::fullPayload());
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), test::fullPayload());
    EXPECT_FALSE(fs::exists(lock));
}

TEST_F(LastUsedPayloadStore, aLockThatNobodyCanRemoveCostsTheEntryAndNoMore)
{
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    const fs::path lock = file().string() + ".lock";
    fs::create_directory(lock);
    quillmark::LastUsedPayloadStore::save(test::fullPayload());
    fs::remove(lock);
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), test::minimalPayload());
}

} // namespace
} // namespace quillmark
