// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What may not be read, or not be written. The process obeys permissions, root's too.

#include "rolls/OddRoll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

constexpr fs::perms readOnlyFile = fs::perms::owner_read;
constexpr fs::perms readOnlyFolder = fs::perms::owner_read | fs::perms::owner_exec;

TEST_F(OddRoll, ofReadOnlyFilesIsTaggedAndTheyStayReadOnly)
{
    for (const BackupMode mode : allBackupModes) {
        slate();
        const fs::path file = frame("01.jpg");
        {
            const Permissions readOnly(file, readOnlyFile);
            EXPECT_EQ(ingest(mode), "");
            const fs::path written = in<Session::Done>(session).outcome.mutated.at(1);
            EXPECT_TRUE(isTagged(written));
            EXPECT_EQ(fs::status(written).permissions(), readOnlyFile);
            EXPECT_EQ(fs::status(file).permissions(), readOnlyFile);
            expectNothingLost(mode);
        }
        fs::remove_all(roll / "_originals");
    }
}

TEST_F(OddRoll, aFileThatCannotBeReadIsNamed)
{
    slate();
    const fs::path file = frame("01.jpg");
    for (const BackupMode mode : {BackupMode::backupOriginals, BackupMode::writeCopies}) {
        std::string error;
        {
            const Permissions hidden(file, fs::perms::none);
            error = ingest(mode);
        }
        EXPECT_THAT(error, AllOf(HasSubstr("Could not copy “" + file.native() + "”"),
                                 HasSubstr("Permission denied")));
        expectUntouched();
        expectNoLeftovers(roll.path());
    }
    {
        const Permissions hidden(file, fs::perms::none);
        EXPECT_THAT(ingest(BackupMode::none),
                    AllOf(HasSubstr("exiftool exited with code 1\n\n"), HasSubstr("01.jpg")));
    }
    EXPECT_EQ(readFile(file), contentOf(file));
    EXPECT_TRUE(isTagged(roll / "00.jpg"));
}

TEST_F(OddRoll, aSlateThatCannotBeReadIsNotFoundThere)
{
    const fs::path file = slate();
    const Permissions hidden(file, fs::perms::none);
    await(session.scan(roll.path()));
    EXPECT_EQ(in<Session::DetectionFailed>(session).triedCount, 1);
}

TEST_F(OddRoll, inAReadOnlyFolderIsAnErrorAndStaysAsItIs)
{
    slate();
    frame("01.jpg");
    const Permissions readOnly(roll.path(), readOnlyFolder);
    for (const char *folder : {"_originals", "_tagged"}) {
        const BackupMode mode = folder == std::string("_tagged") ? BackupMode::writeCopies
                                                                 : BackupMode::backupOriginals;
        EXPECT_THAT(ingest(mode),
                    AllOf(HasSubstr("Could not make the folder “" + (roll / folder).native() + "”"),
                          HasSubstr("Permission denied")));
    }
    EXPECT_THAT(ingest(BackupMode::none), AllOf(HasSubstr("exiftool exited with code 1\n\n"),
                                                HasSubstr("00.jpg"), HasSubstr("01.jpg")));
    expectUntouched();
    expectNoLeftovers(roll.path());
}

/// A folder that cannot be written to cannot be moved into another one either, nor emptied.
TEST_F(OddRoll, withAReadOnlyFolderOfImagesLeavesNothingBehind)
{
    slate();
    const std::vector<fs::path> frames{frame("album.jpg/01.jpg"), frame("album.jpg/inner/02.jpg")};
    const Permissions readOnly(roll / "album.jpg", readOnlyFolder);
    const Permissions innerReadOnly(roll / "album.jpg/inner", readOnlyFolder);
    for (const BackupMode mode : allBackupModes) {
        for (int runs = 0; runs < 2; ++runs) {
            const std::string error = ingest(mode);
            if (mode == BackupMode::writeCopies) {
                EXPECT_EQ(error, "");
                EXPECT_TRUE(isTagged(roll / "_tagged/album.jpg/01.jpg"));
            } else {
                EXPECT_THAT(error, AllOf(HasSubstr("exiftool exited with code 1\n\n"),
                                         HasSubstr("album.jpg/01.jpg")));
            }
            for (const fs::path &file : frames) {
                EXPECT_EQ(readFile(file), contentOf(file));
            }
            expectNoLeftovers(roll.path());
        }
    }
    EXPECT_EQ(readFile(roll / "_originals/album.jpg/01.jpg"), contentOf(frames[0]));
    EXPECT_EQ(readFile(roll / "_originals/album.jpg/inner/02.jpg"), contentOf(frames[1]));
    EXPECT_EQ(readFile(roll / "_tagged/album.jpg/inner/02.jpg"), contentOf(frames[1]));
}

TEST_F(OddRoll, withAReadOnlyFolderAmongItsBackupsLeavesNothingBehind)
{
    slate();
    const fs::path file = frame("album.jpg/01.jpg");
    for (const BackupMode mode : {BackupMode::backupOriginals, BackupMode::writeCopies}) {
        const fs::path output = roll / (mode == BackupMode::writeCopies ? "_tagged" : "_originals");
        for (const fs::path &place : {output / "album.jpg", output / ".quillmark-a1B2c3/copy"}) {
            fs::create_directories(place / "inner");
            roll.write(place.lexically_relative(roll.path()) / "inner/01.jpg", "earlier");
            fs::permissions(place / "inner", readOnlyFolder);
            fs::permissions(place, readOnlyFolder);
        }
        EXPECT_EQ(ingest(mode), "");
        EXPECT_FALSE(fs::exists(output / "album.jpg/inner"));
        expectNoLeftovers(roll.path());
    }
    EXPECT_EQ(readFile(roll / "_originals/album.jpg/01.jpg"), contentOf(file));
}

TEST_F(OddRoll, inAFolderThatCannotBeListedHasNoImages)
{
    slate();
    const Permissions hidden(roll.path(), fs::perms::none);
    EXPECT_EQ(ingest(BackupMode::none), "Folder contains no JPG or TIFF images.");
}

TEST_F(OddRoll, aSubfolderThatCannotBeListedIsPassedOver)
{
    slate();
    frame("sub/01.jpg");
    frame("other/02.jpg");
    session.setRecursive(true);
    const Permissions hidden(roll / "sub", fs::perms::none);
    EXPECT_EQ(ingest(BackupMode::backupOriginals), "");
    EXPECT_EQ(in<Session::Done>(session).outcome.mutated.size(), 2);
}

TEST_F(OddRoll, typedMetadataForAFolderThatCannotBeListedIsAnError)
{
    slate();
    const Permissions hidden(roll.path(), fs::perms::none);
    session.setState(Session::ManualEntry{roll.path(), {}});
    await(session.submitManual(minimalPayload()));
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(),
                AllOf(HasSubstr("Could not list the folder “" + roll.path().native() + "”"),
                      HasSubstr("Permission denied")));
}

} // namespace
} // namespace quillmark::test
