// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/DurableCopies.h"
#include "ingest/PreparationSupport.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace quillmark::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

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

TEST(Ingestor, moreFilesThanGoToDiskTogetherAreAllCopied)
{
    const TempDir roll;
    const std::size_t count = 2 * DurableCopies::together + 1;
    Paths files;
    Paths copies;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = std::to_string(i) + ".jpg";
        files.push_back(roll.write(name, "frame " + std::to_string(i)));
        copies.push_back(roll / "_originals" / name);
    }
    const PreparedFiles prepared =
        Ingestor::prepareFiles(files, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(prepared.backups, copies);
    EXPECT_EQ(contents(roll / "_originals").size(), count);
    for (std::size_t i = 0; i < count; ++i) {
        EXPECT_EQ(readFile(copies[i]), "frame " + std::to_string(i));
    }
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

TEST(Ingestor, aDirectoryAtTheDestinationIsReplaced)
{
    const TempDir roll;
    const fs::path file = roll.write("a.jpg", "A");
    roll.write("_originals/a.jpg/inner.txt", "");
    Ingestor::prepareFiles({file}, roll.path(), BackupMode::backupOriginals);
    EXPECT_EQ(readFile(roll / "_originals" / "a.jpg"), "A");
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
} // namespace quillmark::test
