// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What somebody does to a roll between the plan and the run.

#include "rolls/OddRoll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace quillmark::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// A planned roll of a slate and two frames.
class ChangedRoll : public OddRoll, public ::testing::WithParamInterface<BackupMode>
{
protected:
    void SetUp() override
    {
        OddRoll::SetUp();
        slate();
        frame("01.jpg");
        frame("02.jpg");
        await(session.scan(roll.path()));
        in<Session::Ready>(session);
    }

    bool copiesFirst() const { return GetParam() != BackupMode::none; }
    fs::path written(const fs::path &name) const
    {
        return (GetParam() == BackupMode::writeCopies ? roll / "_tagged" : roll.path()) / name;
    }
};

TEST_P(ChangedRoll, thatLostAFileNamesIt)
{
    const std::string content = contentOf(roll / "01.jpg");
    fs::rename(roll / "01.jpg", roll / "moved");
    const std::string error = run(GetParam());
    EXPECT_THAT(error, HasSubstr((roll / "01.jpg").native()));
    EXPECT_EQ(readFile(roll / "moved"), content);
    EXPECT_EQ(isTagged(roll / "00.jpg"), !copiesFirst());
    EXPECT_EQ(isTagged(roll / "02.jpg"), !copiesFirst());
    expectNoLeftovers(roll.path());
}

TEST_P(ChangedRoll, whoseFileShrankLosesNothingMore)
{
    const std::string half = contentOf(roll / "01.jpg").substr(0, 300);
    roll.write("01.jpg", half);
    const std::string error = run(GetParam());
    EXPECT_THAT(error, AllOf(HasSubstr("exiftool exited with code 1\n\n"), HasSubstr("01.jpg")));
    EXPECT_EQ(readFile(roll / "01.jpg"), half);
    EXPECT_TRUE(isTagged(written("00.jpg")));
    EXPECT_TRUE(isTagged(written("02.jpg")));
    if (GetParam() == BackupMode::backupOriginals) {
        EXPECT_EQ(readFile(roll / "_originals/01.jpg"), half);
    }
    expectNoLeftovers(roll.path());
}

TEST_P(ChangedRoll, whoseFileLostItsEndIsTaggedWithWhatThereIs)
{
    const std::string &content = contentOf(roll / "01.jpg");
    roll.write("01.jpg", content.substr(0, content.size() - 50));
    remember(roll / "01.jpg");
    EXPECT_EQ(run(GetParam()), "");
    EXPECT_TRUE(isTagged(written("01.jpg")));
    expectNothingLost(GetParam());
}

TEST_P(ChangedRoll, whoseFileWasReplacedTagsWhatIsThere)
{
    const fs::path other = slate();
    fs::copy_file(other, roll / "01.jpg", fs::copy_options::overwrite_existing);
    remember(roll / "01.jpg");
    EXPECT_EQ(run(GetParam()), "");
    EXPECT_TRUE(isTagged(written("01.jpg")));
    expectNothingLost(GetParam());
}

TEST_P(ChangedRoll, whoseFileBecameAFolderLosesNothing)
{
    fs::rename(roll / "01.jpg", roll / "inner.jpg");
    fs::create_directory(roll / "01.jpg");
    fs::rename(roll / "inner.jpg", roll / "01.jpg/inner.jpg");
    EXPECT_EQ(run(GetParam()), "");
    EXPECT_TRUE(isTagged(written("01.jpg/inner.jpg")));
    if (GetParam() == BackupMode::backupOriginals) {
        EXPECT_FALSE(isTagged(roll / "_originals/01.jpg/inner.jpg"));
    }
}

TEST_P(ChangedRoll, whoseFileBecameAPipeDoesNotBlock)
{
    fs::remove(roll / "01.jpg");
    ASSERT_EQ(::mkfifo((roll / "01.jpg").c_str(), 0600), 0);
    EXPECT_THAT(run(GetParam()), HasSubstr("01.jpg"));
    expectNoLeftovers(roll.path());
}

TEST_P(ChangedRoll, whoseFileBecameALinkLeavesTheTarget)
{
    const TempDir elsewhere;
    const std::string content = contentOf(roll / "01.jpg");
    fs::copy_file(roll / "01.jpg", elsewhere / "far.jpg");
    fs::remove(roll / "01.jpg");
    fs::create_symlink(elsewhere / "far.jpg", roll / "01.jpg");
    EXPECT_EQ(run(GetParam()), "");
    EXPECT_TRUE(isTagged(written("01.jpg")));
    EXPECT_EQ(readFile(elsewhere / "far.jpg"), content);
}

TEST_P(ChangedRoll, thatGrewIsTaggedAsPlanned)
{
    const fs::path late = frame("03.jpg");
    EXPECT_EQ(run(GetParam()), "");
    EXPECT_THAT(in<Session::Done>(session).outcome.mutated, SizeIs(3));
    EXPECT_EQ(readFile(late), contentOf(late));
    expectNothingLost(GetParam());
}

TEST_P(ChangedRoll, whoseFolderBecameAFileNamesIt)
{
    const TempDir elsewhere;
    fs::rename(roll.path(), elsewhere / "roll");
    {
        std::ofstream(roll.path()) << "in the way";
    }
    const std::string error = run(GetParam());
    EXPECT_THAT(error, HasSubstr(roll.path().native()));
    EXPECT_EQ(readFile(roll.path()), "in the way");
    fs::remove(roll.path());
    fs::rename(elsewhere / "roll", roll.path());
    expectUntouched();
}

INSTANTIATE_TEST_SUITE_P(OddRoll, ChangedRoll,
                         ::testing::Values(BackupMode::backupOriginals, BackupMode::writeCopies,
                                           BackupMode::none),
                         titleOf);

} // namespace
} // namespace quillmark::test
