// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// File systems that are full, or that nobody can write to.

#include "rolls/Disk.h"
#include "ingest/Ingestor.h"
#include "rolls/OddRoll.h"
#include "rolls/Privileges.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// A roll on a disk of its own: "card/00.jpg" and so on from the roll's folder.
class OddDisk : public OddRoll
{
protected:
    void SetUp() override
    {
        OddRoll::SetUp();
        if (!canMount()) {
            GTEST_SKIP() << "this system does not let tests mount file systems";
        }
        disk.emplace(std::size_t{8} << 20U);
        for (const fs::path &file : {slate(), frame("01.jpg"), frame("02.jpg")}) {
            contents[file.filename()] = readFile(file);
            fs::copy_file(file, disk->path() / file.filename());
        }
    }

    void expectDiskUntouched() const
    {
        for (const auto &[name, content] : contents) {
            EXPECT_EQ(readFile(disk->path() / name), content) << name;
        }
        expectNoLeftovers(disk->path());
    }

    std::optional<Disk> disk;
    std::map<fs::path, std::string> contents;
};

TEST_F(OddDisk, thatIsReadOnlyIsAnErrorThatNamesWhatFailed)
{
    disk->makeReadOnly();
    EXPECT_THAT(
        ingest(BackupMode::backupOriginals, disk->path()),
        AllOf(HasSubstr("Could not make the folder “" + (disk->path() / "_originals").native()),
              HasSubstr("Read-only file system")));
    EXPECT_THAT(
        ingest(BackupMode::writeCopies, disk->path()),
        AllOf(HasSubstr("Could not make the folder “" + (disk->path() / "_tagged").native()),
              HasSubstr("Read-only file system")));
    EXPECT_THAT(ingest(BackupMode::none, disk->path()),
                AllOf(HasSubstr("exiftool exited with code 1\n\n"), HasSubstr("00.jpg"),
                      HasSubstr("01.jpg"), HasSubstr("02.jpg")));
    expectDiskUntouched();
}

TEST_F(OddDisk, withoutRoomForCopiesIsAnErrorAndTheNextRunWorks)
{
    const fs::path ballast = disk->path() / "ballast";
    for (const BackupMode mode : {BackupMode::backupOriginals, BackupMode::writeCopies}) {
        disk->fill("ballast", 8192);
        EXPECT_THAT(ingest(mode, disk->path()),
                    AllOf(HasSubstr("Could not copy “" + (disk->path() / "00.jpg").native() + "”"),
                          HasSubstr("No space left on device")));
        expectDiskUntouched();
        fs::remove(ballast);
    }
    EXPECT_EQ(ingest(BackupMode::backupOriginals, disk->path()), "");
    for (const auto &[name, content] : contents) {
        EXPECT_TRUE(isTagged(disk->path() / name)) << name;
        EXPECT_EQ(readFile(disk->path() / "_originals" / name), content) << name;
    }
    expectNoLeftovers(disk->path());
}

TEST_F(OddDisk, withRoomForOneCopyIsEnoughToReplaceEachOfThem)
{
    std::vector<fs::path> files;
    const fs::path folder = disk->path();
    for (int i = 10; i < 40; ++i) {
        files.push_back(folder / (std::to_string(i) + ".jpg"));
        std::ofstream(files.back()) << std::string(100'000, 'n');
    }
    Ingestor::prepareFiles(files, folder, BackupMode::backupOriginals);
    std::ofstream(files.front()) << std::string(100'000, 'm');
    disk->fill("ballast", 150'000);
    EXPECT_NO_THROW(Ingestor::prepareFiles(files, folder, BackupMode::backupOriginals));
    EXPECT_EQ(readFile(folder / "_originals" / "10.jpg"), readFile(files.front()));
    expectNoLeftovers(folder);
}

TEST_F(OddDisk, withoutRoomForTaggingIsAnErrorAndCostsNothing)
{
    disk->fill("ballast", 4096);
    EXPECT_THAT(ingest(BackupMode::none, disk->path()),
                AllOf(HasSubstr("exiftool exited with code 1\n\n"), HasSubstr("00.jpg")));
    for (const auto &[name, content] : contents) {
        const fs::path file = disk->path() / name;
        EXPECT_TRUE(
            readFile(file) == content ||
            (isTagged(file) && picturePart(file) == content.substr(content.find("\xFF\xDA"))))
            << name;
    }
    expectNoLeftovers(disk->path());

    fs::remove(disk->path() / "ballast");
    EXPECT_EQ(ingest(BackupMode::none, disk->path()), "");
}

TEST_F(OddDisk, thatTheBackupsFillCostsNothing)
{
    constexpr std::size_t block = 4096;
    ASSERT_GT(contents.at("00.jpg").size(), block);
    std::size_t room = block; // for all copies, and less than a frame
    for (const auto &[name, content] : contents) {
        room += (content.size() + block - 1) / block * block;
    }
    disk->fill("ballast", room);
    EXPECT_THAT(ingest(BackupMode::backupOriginals, disk->path()),
                AllOf(HasSubstr("exiftool exited with code 1\n\n"), HasSubstr("00.jpg")));
    for (const auto &[name, content] : contents) {
        EXPECT_EQ(readFile(disk->path() / "_originals" / name), content) << name;
        EXPECT_TRUE(readFile(disk->path() / name) == content || isTagged(disk->path() / name))
            << name;
    }
    expectNoLeftovers(disk->path());

    fs::remove(disk->path() / "ballast");
    EXPECT_EQ(ingest(BackupMode::backupOriginals, disk->path()), "");
}

TEST_F(OddDisk, ofTheBackupsAloneMayBeFull)
{
    fs::create_directory_symlink(disk->path(), roll / "_originals");
    for (const auto &[name, content] : contents) {
        fs::remove(disk->path() / name);
    }
    disk->fill("ballast", 8192);
    EXPECT_THAT(ingest(BackupMode::backupOriginals),
                AllOf(HasSubstr("Could not copy “" + (roll / "00.jpg").native() + "”"),
                      HasSubstr("No space left on device")));
    expectUntouched();
    expectNoLeftovers(disk->path());

    // A backup may well be on another disk.
    fs::remove(disk->path() / "ballast");
    EXPECT_EQ(ingest(BackupMode::backupOriginals), "");
    expectNothingLost(BackupMode::backupOriginals);
}

} // namespace
} // namespace quillmark::test
