// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/Ingestor.h"
#include "base/Described.h"
#include "base/PathText.h"
#include "ingest/FileError.h"
#include "support/Printers.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::TempDir;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Paths = std::vector<fs::path>;

/// Everything below a folder, hidden entries included, as paths from it.
std::vector<std::string> contents(const fs::path &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        names.push_back(entry.path().lexically_relative(folder).native());
    }
    return names;
}

FileError failureOf(const Paths &files, const fs::path &folder, BackupMode mode)
{
    try {
        Ingestor::prepareFiles(files, folder, mode);
    } catch (const FileError &error) {
        return error;
    }
    throw std::logic_error("preparation did not fail");
}

TEST(BackupMode, rawValuesMatchExactly)
{
    for (const BackupMode mode : allBackupModes) {
        EXPECT_EQ(backupModeFromRawValue(rawValue(mode)), mode);
    }
    EXPECT_EQ(rawValue(BackupMode::backupOriginals), QStringLiteral("backup-originals"));
    EXPECT_EQ(rawValue(BackupMode::writeCopies), QStringLiteral("write-copies"));
    EXPECT_EQ(rawValue(BackupMode::none), QStringLiteral("none"));
    for (const char16_t *text : {u"", u"None", u"backup_originals", u"write-copies ", u"nonee"}) {
        EXPECT_FALSE(backupModeFromRawValue(QString::fromUtf16(text)).has_value());
    }
}

TEST(Ingestor, backsOriginalsUpAndWritesIntoThem)
{
    const TempDir roll;
    const Paths files{roll.write("a.jpg", "A"), roll.write("b.tif", "B")};
    const PreparedFiles prepared =
        Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(prepared.mutated, files);
    EXPECT_THAT(prepared.backups,
                ElementsAre(roll / "_originals" / "a.jpg", roll / "_originals" / "b.tif"));
    EXPECT_EQ(readFile(prepared.backups[0]), "A");
    EXPECT_EQ(readFile(prepared.backups[1]), "B");
    EXPECT_THAT(contents(roll.path()),
                UnorderedElementsAre("a.jpg", "b.tif", "_originals", "_originals/a.jpg",
                                     "_originals/b.tif"));
}

TEST(Ingestor, writesCopiesAndLeavesOriginals)
{
    const TempDir roll;
    const Paths files{roll.write("a.jpg", "A")};
    const PreparedFiles prepared =
        Ingestor::prepareFiles(files, roll.path(), BackupMode::writeCopies);
    EXPECT_THAT(prepared.mutated, ElementsAre(roll / "_tagged" / "a.jpg"));
    EXPECT_THAT(prepared.backups, IsEmpty());
    EXPECT_EQ(readFile(roll / "_tagged" / "a.jpg"), "A");
    EXPECT_EQ(readFile(roll / "a.jpg"), "A");
}

TEST(Ingestor, modeNoneTouchesNothing)
{
    const TempDir roll;
    const Paths files{roll / "not-even-there.jpg"};
    const PreparedFiles prepared = Ingestor::prepareFiles(files, roll.path(), BackupMode::none);
    EXPECT_EQ(prepared.mutated, files);
    EXPECT_THAT(prepared.backups, IsEmpty());
    EXPECT_THAT(contents(roll.path()), IsEmpty());
}

TEST(Ingestor, emptyRollStillMakesTheFolder)
{
    const TempDir roll;
    Ingestor::prepareFiles({}, roll.path(), BackupMode::backupOriginals);
    Ingestor::prepareFiles({}, roll.path(), BackupMode::writeCopies);
    EXPECT_THAT(contents(roll.path()), UnorderedElementsAre("_originals", "_tagged"));
}

TEST(Ingestor, secondRunReplacesTheCopies)
{
    const TempDir roll;
    const Paths files{roll.write("a.jpg", "first")};
    Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    roll.write("a.jpg", "second");
    Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(readFile(roll / "_originals" / "a.jpg"), "second");
}

TEST(Ingestor, sameNameFromTwoSubfoldersGoesToOneCopy)
{
    const TempDir roll;
    const Paths files{roll.write("1/a.jpg", "one"), roll.write("2/a.jpg", "two")};
    const PreparedFiles prepared =
        Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    const fs::path copy = roll / "_originals" / "a.jpg";
    EXPECT_THAT(prepared.backups, ElementsAre(copy, copy));
    EXPECT_EQ(readFile(copy), "two");
}

TEST(Ingestor, copiesKeepModificationTimeAndPermissions)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", "A");
    const fs::file_time_type moment{std::chrono::seconds(-500'000'000)};
    fs::last_write_time(file, moment);
    fs::permissions(file, fs::perms::owner_read | fs::perms::group_read);
    Ingestor::prepareFiles({file}, roll.path(), BackupMode::backupOriginals);
    const fs::path copy = roll / "_originals" / "a.jpg";
    EXPECT_EQ(fs::last_write_time(copy), moment);
    EXPECT_EQ(fs::status(copy).permissions(), fs::perms::owner_read | fs::perms::group_read);
    // A second run replaces it although it is read-only.
    EXPECT_NO_THROW(Ingestor::prepareFiles({file}, roll.path(), BackupMode::backupOriginals));
}

TEST(Ingestor, aLinkedSourceBecomesARealCopy)
{
    const TempDir roll;
    const TempDir elsewhere;
    elsewhere.write("a.jpg", "far");
    fs::create_symlink(elsewhere / "a.jpg", roll / "link.jpg");
    Ingestor::prepareFiles({roll / "link.jpg"}, roll.path(), BackupMode::backupOriginals);
    const fs::path copy = roll / "_originals" / "link.jpg";
    EXPECT_FALSE(fs::is_symlink(copy));
    EXPECT_EQ(readFile(copy), "far");
}

TEST(Ingestor, aLinkAtTheDestinationIsReplacedAndItsTargetStays)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", "A");
    const fs::path target = roll.write("precious.txt", "P");
    fs::create_directory(roll / "_originals");
    fs::create_symlink(target, roll / "_originals" / "a.jpg");
    Ingestor::prepareFiles({file}, roll.path(), BackupMode::backupOriginals);
    EXPECT_FALSE(fs::is_symlink(roll / "_originals" / "a.jpg"));
    EXPECT_EQ(readFile(roll / "_originals" / "a.jpg"), "A");
    EXPECT_EQ(readFile(target), "P");
}

TEST(Ingestor, aDirectoryNamedLikeAnImageIsCopiedWhole)
{
    const TempDir roll;
    roll.write("album.jpg/a.jpg", "A");
    roll.write("album.jpg/sub/b.jpg", "B");
    fs::create_directory_symlink("..", roll / "album.jpg" / "loop");
    for (int run = 0; run < 2; ++run) {
        Ingestor::prepareFiles({roll / "album.jpg"}, roll.path(), BackupMode::backupOriginals);
        EXPECT_EQ(readFile(roll / "_originals/album.jpg/a.jpg"), "A");
        EXPECT_EQ(readFile(roll / "_originals/album.jpg/sub/b.jpg"), "B");
        EXPECT_TRUE(fs::is_symlink(roll / "_originals/album.jpg/loop"));
        EXPECT_THAT(contents(roll / "_originals"),
                    UnorderedElementsAre("album.jpg", "album.jpg/a.jpg", "album.jpg/sub",
                                         "album.jpg/sub/b.jpg", "album.jpg/loop"));
    }
}

TEST(Ingestor, aLinkToNowhereInsideADirectoryStaysALink)
{
    const TempDir roll;
    roll.write("album.jpg/a.jpg", "A");
    fs::create_symlink("nowhere", roll / "album.jpg" / "b.jpg");
    Ingestor::prepareFiles({roll / "album.jpg"}, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(fs::read_symlink(roll / "_originals/album.jpg/b.jpg"), "nowhere");
    EXPECT_EQ(readFile(roll / "_originals/album.jpg/a.jpg"), "A");
}

TEST(Ingestor, runsAtTheSameTimeDoNotMixTheirCopies)
{
    const TempDir roll;
    constexpr int files = 20;
    std::vector<Paths> sources(2);
    for (std::size_t run = 0; run < sources.size(); ++run) {
        for (int i = 0; i < files; ++i) {
            const std::string name = std::to_string(run) + "-" + std::to_string(i) + ".jpg";
            sources[run].push_back(roll.write(name, name));
        }
    }
    {
        std::vector<std::jthread> runs;
        for (const Paths &own : sources) {
            runs.emplace_back(
                [&] { Ingestor::prepareFiles(own, roll.path(), BackupMode::backupOriginals); });
        }
    }
    for (const Paths &own : sources) {
        for (const fs::path &file : own) {
            EXPECT_EQ(readFile(roll / "_originals" / file.filename()), file.filename().string());
        }
    }
}

TEST(Ingestor, aDirectoryAroundTheOutputIsRefused)
{
    const TempDir roll;
    fs::create_directory_symlink(".", roll / "loop.jpg");
    const FileError error =
        failureOf({roll / "loop.jpg"}, roll.path(), BackupMode::backupOriginals);
    EXPECT_TRUE(error.description().contains(QStringLiteral("loop.jpg")));
    EXPECT_THAT(contents(roll / "_originals"), IsEmpty());
}

TEST(Ingestor, aDirectoryAtTheDestinationIsReplaced)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", "A");
    roll.write("_originals/a.jpg/inner.txt", "");
    Ingestor::prepareFiles({file}, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(readFile(roll / "_originals" / "a.jpg"), "A");
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

/// Lets no file of this process grow beyond a size while it lives: writing fails as on a
/// full disk, only with another message.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes) : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    void (*m_handler)(int);
};

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

TEST(Ingestor, oddNamesAreCopiedByteForByte)
{
    const TempDir roll;
    Paths files;
    for (const std::string name :
         {"-dash.jpg", "new\nline.jpg", "caf\xE9.jpg", "a=b%c'\".jpg", "\xF0\x9F\x8E\x9E.jpg"}) {
        files.push_back(roll.write(name, name));
    }
    files.push_back(roll.write(std::string(251, 'n') + ".jpg", "long"));
    const PreparedFiles prepared =
        Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    for (std::size_t i = 0; i < files.size(); ++i) {
        EXPECT_EQ(prepared.backups[i].filename(), files[i].filename());
        EXPECT_EQ(readFile(prepared.backups[i]), readFile(files[i]));
    }
}

} // namespace
} // namespace quillmark
