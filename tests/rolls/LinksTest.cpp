// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "rolls/OddRoll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Where a run in a mode writes what the roll has under a name.
fs::path written(const TempDir &roll, BackupMode mode, const fs::path &name)
{
    return (mode == BackupMode::writeCopies ? roll / "_tagged" : roll.path()) / name;
}

// --- Symbolic links ----------------------------------------------------------------

TEST_F(OddRoll, aLinkedFrameBecomesAFrameOfItsOwnAndItsTargetStays)
{
    for (const BackupMode mode : allBackupModes) {
        const TempDir elsewhere;
        slate();
        const fs::path target = elsewhere.write("far.jpg", readFile(frame("01.jpg")));
        fs::create_symlink(fs::relative(target, roll.path()), roll / "link.jpg");
        EXPECT_EQ(ingest(mode), "");
        EXPECT_TRUE(isTagged(written(roll, mode, "link.jpg")));
        EXPECT_EQ(readFile(target), contentOf(roll / "01.jpg"));
        EXPECT_EQ(fs::is_symlink(roll / "link.jpg"), mode == BackupMode::writeCopies);
        if (mode == BackupMode::backupOriginals) {
            EXPECT_EQ(readFile(roll / "_originals/link.jpg"), contentOf(roll / "01.jpg"));
        }
        expectNothingLost(mode);
        fs::remove_all(roll / "_originals");
        fs::remove(roll / "link.jpg");
    }
}

TEST_F(OddRoll, aLinkedSlateIsFound)
{
    const TempDir elsewhere;
    fs::rename(slate(), elsewhere / "slate");
    fs::create_symlink(elsewhere / "slate", roll / "00.jpg");
    await(session.scan(roll.path()));
    EXPECT_EQ(in<Session::Ready>(session).plan.detection.file, roll / "00.jpg");
}

/// Links that lead nowhere.
struct Nowhere {
    const char *title;
    const char *target;
    const char *reason;
};

class DeadLink : public OddRoll, public ::testing::WithParamInterface<Nowhere>
{};

TEST_P(DeadLink, isPassedOverByTheScanAndNamedByTheRun)
{
    slate();
    frame("01.jpg");
    fs::create_symlink(GetParam().target, roll / "000.jpg");
    for (const BackupMode mode : {BackupMode::backupOriginals, BackupMode::writeCopies}) {
        const std::string error = ingest(mode);
        EXPECT_THAT(error, HasSubstr("Could not copy “" + (roll / "000.jpg").native() + "”"));
        EXPECT_THAT(error, HasSubstr(GetParam().reason));
        expectUntouched();
        expectNoLeftovers(roll.path());
    }
    const std::string error = ingest(BackupMode::none);
    EXPECT_THAT(error, HasSubstr("exiftool exited with code 1\n\n"));
    EXPECT_THAT(error, HasSubstr("000.jpg"));
    EXPECT_TRUE(isTagged(roll / "01.jpg"));
    EXPECT_EQ(fs::read_symlink(roll / "000.jpg"), GetParam().target);
    expectNothingLost(BackupMode::none);
}

INSTANTIATE_TEST_SUITE_P(
    OddRoll, DeadLink,
    ::testing::Values(Nowhere{"dangling", "nowhere/at/all.jpg", "No such file or directory"},
                      Nowhere{"loop", "000.jpg", "Too many levels of symbolic links"},
                      Nowhere{"throughAFile", "01.jpg/inner.jpg", "Not a directory"}),
    [](const auto &nowhere) { return std::string(nowhere.param.title); });

TEST_F(OddRoll, aLinkToAFolderIsBackedUpWithWhatItLeadsTo)
{
    const TempDir elsewhere;
    slate();
    frame("01.jpg");
    const std::string content = contentOf(roll / "01.jpg");
    fs::create_directory_symlink(elsewhere.path(), roll / "album.jpg");
    fs::create_directory_symlink(elsewhere.path(), roll / "album");
    session.setRecursive(true);
    for (const BackupMode mode : allBackupModes) {
        elsewhere.write("far.jpg", content);
        EXPECT_EQ(ingest(mode), "");
        EXPECT_THAT(in<Session::Done>(session).outcome.plan.rollFiles,
                    ElementsAre(roll / "00.jpg", roll / "01.jpg", roll / "album.jpg"));
        if (mode == BackupMode::writeCopies) {
            EXPECT_EQ(readFile(elsewhere / "far.jpg"), content);
            EXPECT_TRUE(isTagged(roll / "_tagged/album.jpg/far.jpg"));
        } else {
            EXPECT_TRUE(isTagged(elsewhere / "far.jpg"));
        }
        if (mode == BackupMode::backupOriginals) {
            EXPECT_EQ(readFile(roll / "_originals/album.jpg/far.jpg"), content);
        }
        EXPECT_TRUE(fs::is_symlink(roll / "album.jpg"));
        expectNothingLost(mode);
        fs::remove_all(roll / "_originals");
        fs::remove_all(roll / "_tagged");
        slate();
        frame("01.jpg");
    }
}

TEST_F(OddRoll, aLinkToTheRollItselfIsRefusedWhereItWouldBeCopied)
{
    slate();
    fs::create_directory_symlink("..", roll / "up.jpg");
    fs::create_directory_symlink(".", roll / "loop");
    session.setRecursive(true);
    for (const BackupMode mode : {BackupMode::backupOriginals, BackupMode::writeCopies}) {
        EXPECT_THAT(ingest(mode),
                    HasSubstr("Could not copy “" + (roll / "up.jpg").native() + "” into itself"));
        expectUntouched();
    }
}

TEST_F(OddRoll, givenAsALinkIsIngested)
{
    const TempDir elsewhere;
    slate();
    fs::create_directory_symlink(roll.path(), elsewhere / "link");
    EXPECT_EQ(ingest(BackupMode::backupOriginals, elsewhere / "link"), "");
    EXPECT_TRUE(isTagged(roll / "00.jpg"));
    expectNothingLost(BackupMode::backupOriginals);
}

// --- Hard links --------------------------------------------------------------------

TEST_F(OddRoll, twoNamesOfOneFileBecomeTwoTaggedFiles)
{
    for (const BackupMode mode : allBackupModes) {
        slate();
        frame("01.jpg");
        fs::remove(roll / "02.jpg");
        fs::create_hard_link(roll / "01.jpg", roll / "02.jpg");
        remember(roll / "02.jpg");
        EXPECT_EQ(ingest(mode), "");
        EXPECT_TRUE(isTagged(written(roll, mode, "01.jpg")));
        EXPECT_TRUE(isTagged(written(roll, mode, "02.jpg")));
        expectNothingLost(mode);
        fs::remove_all(roll / "_originals");
    }
}

TEST_F(OddRoll, theOtherNameOfAFileKeepsItsBytes)
{
    const fs::path other = roll / "elsewhere" / "kept.jpg";
    fs::create_directory(roll / "elsewhere");
    for (const BackupMode mode : allBackupModes) {
        slate();
        frame("01.jpg");
        fs::remove(other);
        fs::create_hard_link(roll / "01.jpg", other);
        EXPECT_EQ(ingest(mode), "");
        EXPECT_EQ(readFile(other), contentOf(roll / "01.jpg"));
        expectNothingLost(mode);
        fs::remove_all(roll / "_originals");
    }
}

TEST_F(OddRoll, aFileThatIsItsOwnBackupIsRefused)
{
    slate();
    frame("01.jpg");
    fs::create_directory(roll / "_originals");
    fs::create_hard_link(roll / "01.jpg", roll / "_originals" / "01.jpg");
    EXPECT_THAT(ingest(BackupMode::backupOriginals),
                HasSubstr("Could not copy “" + (roll / "01.jpg").native() + "” into “" +
                          (roll / "_originals").native() + "”, where it already is"));
    expectUntouched();
}

} // namespace
} // namespace quillmark::test
