// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/Workplace.h"

#include "ingest/PreparationSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <system_error>

namespace quillmark::test {
namespace {

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST(Workplace, goesWithWhatStandsInIt)
{
    const TempDir folder;
    {
        const Workplace workplace(folder.path());
        fs::create_directories(workplace.copy() / "inner");
        EXPECT_EQ(contents(folder.path()).size(), 3U);
    }
    EXPECT_THAT(contents(folder.path()), IsEmpty());
}

TEST(Workplace, cannotBeMadeInAFolderThatIsMissing)
{
    const TempDir folder;
    EXPECT_THROW(Workplace(folder / "gone"), std::system_error);
}

TEST(Workplace, staysWhileItIsUsed)
{
    const TempDir folder;
    const Workplace workplace(folder.path());
    removeAbandonedWorkplaces(folder.path());
    EXPECT_EQ(contents(folder.path()).size(), 1U);
}

TEST(Workplace, ofAKilledProgramIsRemovedByTheNextRun)
{
    const TempDir roll;
    const fs::path frame = roll.write("1.jpg", "frame");
    roll.write("_originals/.quillmark-a1B2c3/copy", "unfinis");
    fs::create_directories(roll / "_originals/.quillmark-Empty0");
    roll.write("_originals/.quillmark-Album0/copy/1.jpg", "a folder's");
    Ingestor::prepareFiles({frame}, roll.path(), BackupMode::backupOriginals);
    EXPECT_THAT(contents(roll.path()),
                UnorderedElementsAre("1.jpg", "_originals", "_originals/1.jpg"));
}

TEST(Workplace, ofAKilledRunInAnotherModeIsRemovedByTheNextThatCopies)
{
    for (const BackupMode mode : {BackupMode::backupOriginals, BackupMode::writeCopies}) {
        const TempDir roll;
        roll.write("_originals/.quillmark-a1B2c3/copy", "unfinis");
        roll.write("_tagged/.quillmark-a1B2c3/copy", "unfinis");
        Ingestor::prepareFiles({}, roll.path(), BackupMode::none);
        EXPECT_EQ(contents(roll.path()).size(), 6U);
        Ingestor::prepareFiles({}, roll.path(), mode);
        EXPECT_THAT(contents(roll.path()), UnorderedElementsAre("_originals", "_tagged"));
    }
    const TempDir roll;
    Ingestor::prepareFiles({}, roll.path(), BackupMode::writeCopies);
    EXPECT_THAT(contents(roll.path()), UnorderedElementsAre("_tagged"));
}

TEST(Workplace, withWhatWasBeingReplacedStays)
{
    const TempDir folder;
    folder.write(".quillmark-a1B2c3/copy/1.jpg", "new");
    folder.write(".quillmark-a1B2c3/replaced/1.jpg", "old");
    removeAbandonedWorkplaces(folder.path());
    EXPECT_EQ(readFile(folder / ".quillmark-a1B2c3/replaced/1.jpg"), "old");
}

TEST(Workplace, nothingElseIsTakenForOne)
{
    const TempDir folder;
    const TempDir elsewhere;
    elsewhere.write("copy", "linked");
    folder.write(".quillmark-abcdef", "a file");
    folder.write(".quillmark-notes/copy/1.jpg", "no");
    folder.write("quillmark-a1B2c3/copy", "no");
    folder.write(".quillmark-ghijkl/mine", "somebody else's");
    fs::create_directory_symlink(elsewhere.path(), folder / ".quillmark-linked");
    fs::create_directory_symlink(elsewhere.path(), folder / ".quillmark-linkst");
    const std::vector<std::string> before = contents(folder.path());
    removeAbandonedWorkplaces(folder.path());
    EXPECT_EQ(contents(folder.path()), before);
    EXPECT_EQ(readFile(elsewhere / "copy"), "linked");
}

TEST(Workplace, isUnhurtByOthersThatAreRemovingAbandonedOnes)
{
    const TempDir folder;
    const auto copyAgainAndAgain = [&folder] {
        for (int i = 0; i < 200; ++i) {
            removeAbandonedWorkplaces(folder.path());
            const Workplace workplace(folder.path());
            if (!fs::create_directory(workplace.copy())) {
                return false;
            }
        }
        return true;
    };
    std::future<bool> other = std::async(std::launch::async, copyAgainAndAgain);
    EXPECT_TRUE(copyAgainAndAgain());
    EXPECT_TRUE(other.get());
    EXPECT_THAT(contents(folder.path()), IsEmpty());
}

} // namespace
} // namespace quillmark::test
