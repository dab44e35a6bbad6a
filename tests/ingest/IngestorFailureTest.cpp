// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Described.h"
#include "base/PathText.h"
#include "ingest/PreparationSupport.h"
#include "support/FileSizeLimit.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <iterator>

namespace quillmark::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAreArray;

TEST(Ingestor, aDirectoryAroundTheOutputIsRefused)
{
    const TempDir roll;
    fs::create_directory_symlink(".", roll / "loop.jpg");
    const FileError error =
        failureOf({roll / "loop.jpg"}, roll.path(), BackupMode::backupOriginals);
    EXPECT_TRUE(error.description().contains(QStringLiteral("loop.jpg")));
    EXPECT_THAT(contents(roll / "_originals"), IsEmpty());
}

/// Sources that are their own destination, each met in another way.
class SelfCopy : public ::testing::TestWithParam<const char *>
{
protected:
    TempDir roll;

    Paths sources()
    {
        const std::string way = GetParam();
        const fs::path first = roll.write("a.jpg", "tagged");
        const fs::path backup = roll.write("_originals/b.jpg", "true backup");
        const fs::path other = roll.write("_originals/a.jpg", "true backup of a");
        if (way == "recursiveListing") {
            return {other, backup, first};
        }
        if (way == "otherSpelling") {
            return {first, roll.path() / "." / "_originals" / ".." / "_originals" / "b.jpg"};
        }
        if (way == "symbolicLink") {
            fs::create_symlink("_originals/b.jpg", roll / "b.jpg");
            return {first, roll / "b.jpg"};
        }
        if (way == "linkToAnotherCopy") {
            fs::create_symlink("_originals/a.jpg", roll / "z.jpg");
            return {first, roll / "z.jpg"};
        }
        if (way == "hardLink") {
            fs::create_hard_link(backup, roll / "b.jpg");
            return {first, roll / "b.jpg"};
        }
        throw std::logic_error("no such way");
    }
};

TEST_P(SelfCopy, failsBeforeAnythingIsTouched)
{
    const Paths files = sources();
    const auto before = contents(roll.path());
    const FileError error = failureOf(files, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(error.code(), std::errc::file_exists);
    EXPECT_TRUE(error.description().contains(pathText(error.path1()))) << error.what();
    EXPECT_EQ(contents(roll.path()), before);
    EXPECT_EQ(readFile(roll / "a.jpg"), "tagged");
    EXPECT_EQ(readFile(roll / "_originals" / "a.jpg"), "true backup of a");
    EXPECT_EQ(readFile(roll / "_originals" / "b.jpg"), "true backup");
}

INSTANTIATE_TEST_SUITE_P(Ingestor, SelfCopy,
                         ::testing::Values("recursiveListing", "otherSpelling", "symbolicLink",
                                           "linkToAnotherCopy", "hardLink"),
                         [](const auto &way) { return std::string(way.param); });

TEST(Ingestor, outputFolderThatLinksBackIsRefused)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", "A");
    fs::create_directory_symlink(".", roll / "_originals");
    const FileError error = failureOf({file}, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(error.code(), std::errc::file_exists);
    EXPECT_EQ(readFile(file), "A");
}

TEST(Ingestor, aMissingSourceFailsAndEarlierCopiesStay)
{
    const TempDir roll;
    const Paths files{roll.write("a.jpg", "A"), roll / "gone.jpg", roll.write("c.jpg", "C")};
    const FileError error = failureOf(files, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    EXPECT_TRUE(error.description().contains(QStringLiteral("gone.jpg")));
    EXPECT_EQ(describe(std::make_exception_ptr(error)), error.description());
    EXPECT_THAT(contents(roll / "_originals"), ElementsAre("a.jpg"));
}

TEST(Ingestor, aFailureFarIntoTheRollLeavesAllCopiesBeforeIt)
{
    const TempDir roll;
    Paths files;
    for (int i = 100; i < 200; ++i) {
        files.push_back(roll.write(std::to_string(i) + ".jpg", "new"));
        roll.write("_originals/" + std::to_string(i) + ".jpg", "old");
    }
    fs::remove(files[80]);
    EXPECT_EQ(failureOf(files, roll.path(), BackupMode::backupOriginals).path1(), files[80]);
    EXPECT_EQ(contents(roll / "_originals").size(), files.size());
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(readFile(roll / "_originals" / files[i].filename()), i < 80 ? "new" : "old");
    }
}

/// Takes file descriptors away until only some are left.
class OpenFileLimit
{
public:
    explicit OpenFileLimit(rlim_t left)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const auto open = std::distance(fs::directory_iterator("/proc/self/fd"), {});
        const rlimit limit{static_cast<rlim_t>(open) + left, m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    OpenFileLimit(const OpenFileLimit &) = delete;
    OpenFileLimit &operator=(const OpenFileLimit &) = delete;
    ~OpenFileLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }

private:
    rlimit m_before{};
};

TEST(Ingestor, fewOpenFilesAreEnough)
{
    const TempDir roll;
    Paths files;
    for (int i = 100; i < 140; ++i) {
        files.push_back(roll.write(std::to_string(i) + ".jpg", "frame"));
    }
    // Which of the calls meets the limit depends on how many files are open already.
    for (rlim_t left = 10; left < 16; ++left) {
        const OpenFileLimit limit(left);
        EXPECT_NO_THROW(Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals));
        EXPECT_EQ(contents(roll / "_originals").size(), files.size()) << left;
    }
}

TEST(Ingestor, fewOpenFilesAreEnoughToReplaceAFolder)
{
    const TempDir roll;
    Paths files{roll / "000.jpg"};
    roll.write("000.jpg/deep/deeper/a.jpg", "frame");
    for (int i = 100; i < 140; ++i) {
        files.push_back(roll.write(std::to_string(i) + ".jpg", "frame"));
    }
    // The second time there is an earlier copy of the folder to be removed.
    Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    const auto copies = contents(roll / "_originals");
    for (rlim_t left = 10; left < 16; ++left) {
        const OpenFileLimit limit(left);
        EXPECT_NO_THROW(Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals));
        EXPECT_THAT(contents(roll / "_originals"), UnorderedElementsAreArray(copies)) << left;
    }
}

TEST(Ingestor, aCopyThatFailsHalfWayLeavesTheEarlierBackupAndNothingElse)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", std::string(100'000, 'a'));
    roll.write("_originals/a.jpg", "true backup");
    {
        const FileSizeLimit limit(50'000);
        const FileError error = failureOf({file}, roll.path(), BackupMode::backupOriginals);
        EXPECT_EQ(error.code(), std::errc::file_too_large);
        EXPECT_TRUE(error.description().contains(pathText(file)));
    }
    EXPECT_EQ(readFile(roll / "_originals" / "a.jpg"), "true backup");
    EXPECT_THAT(contents(roll / "_originals"), ElementsAre("a.jpg"));
    EXPECT_NO_THROW(Ingestor::prepareFiles({file}, roll.path(), BackupMode::backupOriginals));
}

TEST(Ingestor, aFileInPlaceOfTheOutputFolderFails)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", "A");
    roll.write("_originals", "in the way");
    const FileError error = failureOf({file}, roll.path(), BackupMode::backupOriginals);
    EXPECT_TRUE(error.description().contains(QStringLiteral("_originals")));
    EXPECT_EQ(readFile(roll / "_originals"), "in the way");
}

TEST(Ingestor, aPipeNamedLikeAnImageFailsAndDoesNotBlock)
{
    const TempDir roll;
    ASSERT_EQ(::mkfifo((roll / "x.jpg").c_str(), 0600), 0);
    const FileError error = failureOf({roll / "x.jpg"}, roll.path(), BackupMode::writeCopies);
    EXPECT_EQ(error.code(), std::errc::not_supported);
    EXPECT_THAT(contents(roll / "_tagged"), IsEmpty());
}

} // namespace
} // namespace quillmark::test
