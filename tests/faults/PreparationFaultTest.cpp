// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/WritingMark.h"
#include "faults/SystemCalls.h"
#include "ingest/PreparationSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

namespace quillmark::test {
namespace {

/// What a preparation that would overwrite its own source is kept from by a check, when the
/// check itself cannot look: better no run than one without a backup.
class CheckThatFails : public ::testing::Test
{
protected:
    FileError failureWith(const Paths &files, const Fault &fault) const
    {
        const WatchedCalls watched({{m_roll.path(), "roll"}}, {fault});
        const FileError error = failureOf(files, m_roll.path(), BackupMode::backupOriginals);
        EXPECT_TRUE(watched.faultsMet());
        return error;
    }

    TempDir m_roll;
};

TEST_F(CheckThatFails, stopsACopyOntoItself)
{
    const fs::path backup = m_roll.write("_originals/a.jpg", "true backup");
    for (const char *function : {"lstat", "stat"}) {
        const FileError error = failureWith({backup}, {function, "roll/_originals/a.jpg", 1, EIO});
        EXPECT_EQ(error.code(), std::errc::io_error) << function;
        EXPECT_EQ(error.path1(), backup);
        EXPECT_EQ(contents(m_roll.path()),
                  (std::vector<std::string>{"_originals", "_originals/a.jpg"}));
    }
}

TEST_F(CheckThatFails, stopsACopyOfAFolderIntoItself)
{
    fs::create_directory_symlink(".", m_roll / "loop.jpg");
    // The first look compares it with the destinations.
    for (const Fault &fault :
         {Fault{"stat", "roll/loop.jpg", 2, EIO}, Fault{"realpath", "roll/_originals", 1, EIO},
          Fault{"stat", "roll/loop.jpg", 3, EACCES}}) {
        const FileError error = failureWith({m_roll / "loop.jpg"}, fault);
        EXPECT_EQ(error.code().value(), fault.error) << fault.function << fault.occurrence;
        EXPECT_TRUE(fs::is_empty(m_roll / "_originals"));
    }
}

TEST(Preparation, opensTheFolderOfACopyInSpiteOfASignal)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", "frame");
    const WatchedCalls watched({{roll.path(), "roll"}},
                               {{"open", "roll/_originals/.quillmark-1", 1, EINTR}});
    Ingestor::prepareFiles({file}, roll.path(), BackupMode::backupOriginals);
    EXPECT_TRUE(watched.faultsMet());
    EXPECT_EQ(readFile(roll / "_originals" / "a.jpg"), "frame");
}

TEST(Preparation, makesNoCopyInAFolderThatCannotBeOpened)
{
    for (const int reason : {EIO, EACCES, EMFILE, ENOENT}) {
        const TempDir roll;
        const fs::path file = roll.write("a.jpg", "frame");
        std::vector<Fault> faults{{"open", "roll/_originals/.quillmark-1", 1, reason}};
        for (int i = 2; reason == ENOENT && i <= 5; ++i) { // gone, as it seems, each time
            faults.push_back(
                {"open", "roll/_originals/.quillmark-" + std::to_string(i), 1, reason});
        }
        const WatchedCalls watched({{roll.path(), "roll"}}, faults);
        const FileError error = failureOf({file}, roll.path(), BackupMode::backupOriginals);
        EXPECT_TRUE(watched.faultsMet()) << reason;
        EXPECT_EQ(error.code().value(), reason);
        EXPECT_EQ(error.path1(), file);
        EXPECT_TRUE(fs::is_empty(roll / "_originals")) << reason;
    }
}

TEST(WritingMark, isMadeInSpiteOfASignal)
{
    const TempDir roll;
    const WatchedCalls watched({{roll.path(), "roll"}}, {{"open", "roll", 1, EINTR}});
    const WritingMark mark(roll.path());
    EXPECT_TRUE(watched.faultsMet());
    EXPECT_TRUE(mark.descriptor());
}

TEST(Preparation, keepsTheFolderOfAnEarlierRunWhereItsPlaceCannotBeTaken)
{
    const TempDir roll;
    roll.write("album.jpg/1.jpg", "new");
    roll.write("_originals/album.jpg/1.jpg", "true backup");
    const std::string workplace = "roll/_originals/.quillmark-1";
    const std::string copy = workplace + "/copy -> roll/_originals/album.jpg";
    const std::string aside = "roll/_originals/album.jpg -> " + workplace + "/replaced";
    // The file system cannot have the two change places, and then a rename fails too.
    for (const std::string &names : {aside, copy}) {
        const WatchedCalls watched({{roll.path(), "roll"}},
                                   {{"renameat2", copy, 1, EINVAL}, {"rename", names, 1, EIO}});
        failureOf({roll / "album.jpg"}, roll.path(), BackupMode::backupOriginals);
        EXPECT_TRUE(watched.faultsMet());
        EXPECT_EQ(readFile(roll / "_originals" / "album.jpg" / "1.jpg"), "true backup");
        EXPECT_EQ(contents(roll / "_originals").size(), 2U);
    }
    // What was moved aside cannot return: then it stays where it is, and the error says where.
    const std::string back = workplace + "/replaced -> roll/_originals/album.jpg";
    fs::path kept;
    {
        const WatchedCalls watched(
            {{roll.path(), "roll"}},
            {{"renameat2", copy, 1, EINVAL}, {"rename", copy, 1, EIO}, {"rename", back, 1, EIO}});
        const FileError error =
            failureOf({roll / "album.jpg"}, roll.path(), BackupMode::backupOriginals);
        EXPECT_TRUE(watched.faultsMet());
        for (const std::string &name : contents(roll / "_originals")) {
            if (fs::path(name).filename() == "replaced") {
                kept = roll / "_originals" / name;
            }
        }
        ASSERT_FALSE(kept.empty());
        EXPECT_EQ(contents(kept.parent_path()),
                  (std::vector<std::string>{"replaced", "replaced/1.jpg"}));
        EXPECT_TRUE(error.description().contains(QString::fromStdString(kept.native())));
    }
    Ingestor::prepareFiles({roll / "album.jpg"}, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(readFile(kept / "1.jpg"), "true backup");
    fs::remove_all(kept.parent_path());
    const WatchedCalls watched({{roll.path(), "roll"}}, {{"renameat2", copy, 1, EINVAL}});
    Ingestor::prepareFiles({roll / "album.jpg"}, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(readFile(roll / "_originals" / "album.jpg" / "1.jpg"), "new");
    EXPECT_EQ(contents(roll / "_originals").size(), 2U);
}

TEST_F(CheckThatFails, namesWhatItCouldNotLookAt)
{
    const fs::path folder = m_roll / "album.jpg";
    fs::create_directory(folder);
    // Looked at as a source, as to its kind, and as to whether the copies are to lie in it.
    const FileError error = failureWith({folder}, {"stat", "roll/album.jpg", 3, EIO});
    EXPECT_EQ(error.path1(), folder);
}

TEST(Preparation, namesTheFileInAFolderThatCouldNotBeCopied)
{
    const TempDir roll;
    const fs::path file = roll.write("album.jpg/sub/1.jpg", "1");
    const WatchedCalls watched({{roll.path(), "roll"}},
                               {{"open", "roll/album.jpg/sub/1.jpg", 1, EACCES}});
    const FileError error =
        failureOf({roll / "album.jpg"}, roll.path(), BackupMode::backupOriginals);
    EXPECT_TRUE(watched.faultsMet());
    EXPECT_EQ(error.path1(), file);
    EXPECT_TRUE(error.description().contains(QStringLiteral("_originals/album.jpg/sub/1.jpg")));
}

TEST(Preparation, leavesNoWorkplaceThatItCouldNotLookAt)
{
    const TempDir roll;
    const Paths files{roll.write("a.jpg", "A")};
    const WatchedCalls watched({{roll.path(), "roll"}},
                               {{"fstat", "roll/_originals/.quillmark-1", 1, EIO}});
    Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    EXPECT_TRUE(watched.faultsMet());
    EXPECT_EQ(contents(roll / "_originals"), std::vector<std::string>{"a.jpg"});
}

TEST(Preparation, goesOnWhereNoWorkplaceCanBeLookedAt)
{
    const TempDir roll;
    const Paths files{roll.write("a.jpg", "A")};
    constexpr int attempts = 5;
    std::vector<Fault> faults;
    for (int i = 1; i <= attempts; ++i) {
        faults.push_back({"fstat", "roll/_originals/.quillmark-" + std::to_string(i), 1, EIO});
    }
    const WatchedCalls watched({{roll.path(), "roll"}}, faults);
    Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    EXPECT_TRUE(watched.faultsMet());
    const std::vector<SystemCall> calls = watched.calls();
    EXPECT_EQ(std::count_if(calls.begin(), calls.end(),
                            [](const SystemCall &call) { return call.function == "mkdtemp"; }),
              attempts);
    EXPECT_EQ(contents(roll / "_originals"), std::vector<std::string>{"a.jpg"});
}

} // namespace
} // namespace quillmark::test
