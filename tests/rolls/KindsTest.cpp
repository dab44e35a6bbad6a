// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What is named like an image and is something else.

#include "base/UniqueFd.h"
#include "rolls/OddRoll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>

namespace quillmark::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

void makePipe(const fs::path &path)
{
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
}

void makeSocket(const fs::path &path)
{
    const UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{AF_UNIX, {}};
    path.native().copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address),
              0);
}

void linkDevice(const fs::path &path)
{
    fs::create_symlink("/dev/zero", path);
}

/// One that gives bytes for ever. Not everybody may make devices.
void makeDevice(const fs::path &path)
{
    ASSERT_EQ(::mknod(path.c_str(), S_IFCHR | 0600, ::makedev(1, 5)), 0);
}

bool mayMakeDevices()
{
    const TempDir folder;
    const fs::path path = folder / "device";
    return ::mknod(path.c_str(), S_IFCHR | 0600, ::makedev(1, 5)) == 0;
}

struct Kind {
    const char *title;
    void (*make)(const fs::path &path);
};

class SpecialFile : public OddRoll, public ::testing::WithParamInterface<Kind>
{
protected:
    void SetUp() override
    {
        OddRoll::SetUp();
        if (GetParam().make == &makeDevice && !mayMakeDevices()) {
            GTEST_SKIP() << "making a device takes root";
        }
    }

    fs::path special()
    {
        GetParam().make(roll / "01.jpg");
        return roll / "01.jpg";
    }
};

TEST_P(SpecialFile, isPassedOverByTheScan)
{
    slate();
    fs::rename(roll / "00.jpg", roll / "02.jpg");
    special();
    await(session.scan(roll.path()));
    const IngestPlan plan = in<Session::Ready>(session).plan;
    EXPECT_EQ(plan.detection.file, roll / "02.jpg");
    EXPECT_THAT(plan.rollFiles, ElementsAre(roll / "01.jpg", roll / "02.jpg"));
}

TEST_P(SpecialFile, aloneIsARollWithoutASlate)
{
    special();
    await(session.scan(roll.path()));
    EXPECT_EQ(in<Session::DetectionFailed>(session).triedCount, 1);
}

TEST_P(SpecialFile, pickedAsTheSlateLeadsToTheForm)
{
    frame("00.jpg");
    await(session.scan(roll.path()));
    await(session.retryWithSlate(special()));
    EXPECT_EQ(in<Session::ManualEntry>(session).slateImage, roll / "01.jpg");
}

TEST_P(SpecialFile, stopsARunThatCopiesBeforeAnythingIsWritten)
{
    slate();
    frame("02.jpg");
    const fs::path file = special();
    for (const BackupMode mode : {BackupMode::backupOriginals, BackupMode::writeCopies}) {
        const std::string error = ingest(mode);
        EXPECT_THAT(error, HasSubstr("Could not copy “" + file.native() + "”"));
        EXPECT_THAT(error, HasSubstr("Operation not supported"));
        expectUntouched();
        expectNoLeftovers(roll.path());
    }
}

TEST_P(SpecialFile, isNamedByARunInPlaceThatTagsTheRest)
{
    slate();
    frame("02.jpg");
    special();
    const std::string error = ingest(BackupMode::none);
    EXPECT_THAT(error, HasSubstr("exiftool exited with code 1\n\n"));
    EXPECT_THAT(error, HasSubstr("01.jpg"));
    EXPECT_TRUE(isTagged(roll / "00.jpg"));
    EXPECT_TRUE(isTagged(roll / "02.jpg"));
    expectNothingLost(BackupMode::none);
    EXPECT_FALSE(fs::is_regular_file(fs::symlink_status(roll / "01.jpg")));
}

INSTANTIATE_TEST_SUITE_P(OddRoll, SpecialFile,
                         ::testing::Values(Kind{"pipe", &makePipe}, Kind{"socket", &makeSocket},
                                           Kind{"device", &makeDevice},
                                           Kind{"linkedDevice", &linkDevice}),
                         [](const auto &kind) { return std::string(kind.param.title); });

// --- Directories -----------------------------------------------------------------

TEST_F(OddRoll, aFolderNamedLikeAnImageIsCopiedAndTaggedWithItsImages)
{
    for (const BackupMode mode : allBackupModes) {
        slate();
        const fs::path inside = frame("album.jpg/a.jpg");
        const fs::path below = frame("album.jpg/deep/b.jpg");
        EXPECT_EQ(ingest(mode), "");
        EXPECT_THAT(in<Session::Done>(session).outcome.plan.rollFiles,
                    ElementsAre(roll / "00.jpg", roll / "album.jpg"));
        if (mode == BackupMode::writeCopies) {
            expectUntouched();
            EXPECT_TRUE(isTagged(roll / "_tagged/album.jpg/a.jpg"));
        } else {
            EXPECT_TRUE(isTagged(inside));
            EXPECT_EQ(readFile(below), contentOf(below));
        }
        if (mode == BackupMode::backupOriginals) {
            EXPECT_EQ(readFile(roll / "_originals/album.jpg/a.jpg"), contentOf(inside));
        }
        expectNoLeftovers(roll.path());
    }
}

TEST_F(OddRoll, aFolderNamedLikeAnImageHoldsNoSlateByItself)
{
    fs::create_directories(roll / "album.jpg");
    fs::rename(slate(), roll / "album.jpg" / "00.jpg");
    await(session.scan(roll.path()));
    EXPECT_EQ(in<Session::DetectionFailed>(session).triedCount, 1);
    session.setRecursive(true);
    await(session.scan(roll.path()));
    EXPECT_EQ(in<Session::Ready>(session).plan.detection.file, roll / "album.jpg" / "00.jpg");
}

TEST_F(OddRoll, aPipeInAFolderNamedLikeAnImageDoesNotBlock)
{
    slate();
    frame("album.jpg/a.jpg");
    makePipe(roll / "album.jpg/b.jpg");
    for (const BackupMode mode : allBackupModes) {
        EXPECT_THAT(ingest(mode), HasSubstr("album.jpg"));
        expectNoLeftovers(roll.path());
    }
}

// --- Files without a picture -------------------------------------------------------

TEST_F(OddRoll, emptyFilesArePassedOverByTheScanAndNamedByTheRun)
{
    for (const BackupMode mode : allBackupModes) {
        slate();
        frame("03.jpg");
        roll.write("000.jpg", "");
        roll.write("02.tif", "");
        const std::string error = ingest(mode);
        EXPECT_THAT(error, HasSubstr("exiftool exited with code 1\n\n"));
        EXPECT_THAT(error, HasSubstr("000.jpg"));
        EXPECT_THAT(error, HasSubstr("02.tif"));
        const fs::path written = mode == BackupMode::writeCopies ? roll / "_tagged" : roll.path();
        EXPECT_TRUE(isTagged(written / "00.jpg"));
        EXPECT_TRUE(isTagged(written / "03.jpg"));
        EXPECT_EQ(fs::file_size(roll / "000.jpg"), 0);
        EXPECT_EQ(fs::file_size(roll / "02.tif"), 0);
        expectNothingLost(mode);
        fs::remove_all(roll / "_originals");
    }
}

TEST_F(OddRoll, ofEmptyFilesAloneHasNoSlate)
{
    roll.write("01.jpg", "");
    roll.write("02.tiff", "");
    await(session.scan(roll.path()));
    EXPECT_EQ(in<Session::DetectionFailed>(session).triedCount, 2);
}

} // namespace
} // namespace quillmark::test
