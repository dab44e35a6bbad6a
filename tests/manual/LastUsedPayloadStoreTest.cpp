// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "manual/LastUsedPayloadStore.h"
#include "support/FileSizeLimit.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/StoredSettings.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

/// Gives the settings of this process a folder of their own, which each case starts by emptying.
class LastUsedPayloadStore : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static const test::TempDir folder;
        home = folder.path();
        ::setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    }
    void SetUp() override { test::forgetSettings(); }

    static fs::path file()
    {
        return test::storedSettings() / "co.larkhollow.quillmark.lastManualPayload.v2";
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
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    for (const char *faulty : {"no json", "{\"version\":2}", ""}) {
        std::ofstream(file()) << faulty;
        EXPECT_FALSE(quillmark::LastUsedPayloadStore::load().has_value());
        EXPECT_EQ(test::readFile(file()), faulty);
    }
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), test::minimalPayload());
}

TEST_F(LastUsedPayloadStore, aFullDiskKeepsTheEarlierPayload)
{
    quillmark::LastUsedPayloadStore::save(test::minimalPayload());
    {
        const test::FileSizeLimit full(100);
        quillmark::LastUsedPayloadStore::save(test::fullPayload());
    }
    EXPECT_EQ(quillmark::LastUsedPayloadStore::load(), test::minimalPayload());
    EXPECT_EQ(std::distance(fs::directory_iterator(file().parent_path()), {}), 1);
}

TEST_F(LastUsedPayloadStore, aFolderThatCannotBeMadeIsNoFailure)
{
    fs::remove_all(home / "Larkhollow");
    std::ofstream(home / "Larkhollow") << "a file in the way";
    quillmark::LastUsedPayloadStore::save(test::fullPayload());
    EXPECT_FALSE(quillmark::LastUsedPayloadStore::load().has_value());
    fs::remove(home / "Larkhollow");
}

} // namespace
} // namespace quillmark
