// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What may stand where a run makes its folder already.

#include "rolls/OddRoll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace quillmark::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

struct Output {
    const char *folder;
    BackupMode mode;
};

/// A roll of a slate and a frame, about to be run in one of the modes that make a folder.
class OutputFolder : public OddRoll, public ::testing::WithParamInterface<Output>
{
protected:
    void SetUp() override
    {
        OddRoll::SetUp();
        slate();
        frame("01.jpg");
    }
    fs::path output() const { return roll / GetParam().folder; }
    std::string ingest() { return OddRoll::ingest(GetParam().mode); }

    void expectRefused(const std::string &reason)
    {
        EXPECT_THAT(ingest(),
                    AllOf(HasSubstr("Could not make the folder “" + output().native() + "”"),
                          HasSubstr(reason)));
        expectUntouched();
    }
};

TEST_P(OutputFolder, whereThereIsAFileIsRefused)
{
    roll.write(GetParam().folder, "in the way");
    expectRefused("Not a directory");
    EXPECT_EQ(readFile(output()), "in the way");
}

TEST_P(OutputFolder, whereThereIsAPipeIsRefused)
{
    ASSERT_EQ(::mkfifo(output().c_str(), 0600), 0);
    expectRefused("Not a directory");
}

TEST_P(OutputFolder, whereThereIsALinkToNowhereIsRefused)
{
    fs::create_symlink("nowhere", output());
    expectRefused("File exists");
    EXPECT_FALSE(fs::exists(roll / "nowhere"));
}

TEST_P(OutputFolder, whereThereIsALinkToItselfIsRefused)
{
    fs::create_symlink(GetParam().folder, output());
    expectRefused("Too many levels of symbolic links");
}

TEST_P(OutputFolder, thatLeadsBackToTheRollIsRefused)
{
    fs::create_directory_symlink(".", output());
    EXPECT_THAT(ingest(), AllOf(HasSubstr("00.jpg"), HasSubstr("where it already is")));
    expectUntouched();
    expectNoLeftovers(roll.path());
}

TEST_P(OutputFolder, thatIsALinkToAnotherFolderIsFilledThere)
{
    const TempDir elsewhere;
    elsewhere.write("kept.txt", "kept");
    fs::create_directory_symlink(elsewhere.path(), output());
    EXPECT_EQ(ingest(), "");
    EXPECT_TRUE(fs::is_regular_file(elsewhere / "01.jpg"));
    EXPECT_EQ(isTagged(elsewhere / "01.jpg"), GetParam().mode == BackupMode::writeCopies);
    EXPECT_EQ(readFile(elsewhere / "kept.txt"), "kept");
    expectNothingLost(GetParam().mode);
}

TEST_P(OutputFolder, thatCannotBeWrittenToIsAnError)
{
    const fs::path backup = roll.write(fs::path(GetParam().folder) / "01.jpg", "earlier");
    {
        const Permissions readOnly(output(), fs::perms::owner_read | fs::perms::owner_exec);
        EXPECT_THAT(ingest(), AllOf(HasSubstr("Could not copy “" + (roll / "00.jpg").native()),
                                    HasSubstr("Permission denied")));
    }
    expectUntouched();
    EXPECT_EQ(readFile(backup), "earlier");
}

TEST_P(OutputFolder, thatCannotBeEnteredIsAnError)
{
    const fs::path backup = roll.write(fs::path(GetParam().folder) / "01.jpg", "earlier");
    {
        const Permissions none(output(), fs::perms::none);
        EXPECT_THAT(ingest(),
                    AllOf(HasSubstr("Could not look at “" + (output() / "00.jpg").native()),
                          HasSubstr("Permission denied")));
    }
    expectUntouched();
    EXPECT_EQ(readFile(backup), "earlier");
}

TEST_P(OutputFolder, thatHoldsAFolderInThePlaceOfACopyIsFilled)
{
    roll.write(fs::path(GetParam().folder) / "01.jpg" / "old.txt", "old");
    EXPECT_EQ(ingest(), "");
    EXPECT_TRUE(fs::is_regular_file(output() / "01.jpg"));
    expectNothingLost(GetParam().mode);
    expectNoLeftovers(roll.path());
}

TEST_P(OutputFolder, thatHoldsAReadOnlyCopyIsFilled)
{
    const fs::path copy = roll.write(fs::path(GetParam().folder) / "01.jpg", "earlier");
    fs::permissions(copy, fs::perms::owner_read);
    EXPECT_EQ(ingest(), "");
    EXPECT_NE(readFile(copy), "earlier");
    expectNothingLost(GetParam().mode);
}

INSTANTIATE_TEST_SUITE_P(OddRoll, OutputFolder,
                         ::testing::Values(Output{"_originals", BackupMode::backupOriginals},
                                           Output{"_tagged", BackupMode::writeCopies}),
                         [](const auto &output) { return std::string(output.param.folder + 1); });

} // namespace
} // namespace quillmark::test
