// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What a killed exiftool leaves beside the files that it was to write, and what looks like it.

#include "Programs.h"
#include "base/UniqueFd.h"
#include "embedding/EmbedRun.h"
#include "embedding/WritingMark.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::TempDir;
using test::writeProgram;

/// A frame with what a killed exiftool left beside it, and a program that stands in for it.
class Leftover : public ::testing::Test
{
protected:
    void run() { run({m_frame}); }
    void run(const std::vector<fs::path> &files)
    {
        runEmbed({.program = writeProgram(m_tools, "exiftool", "#!/bin/sh\n"),
                  .configuration = m_tools.write("quillmark.config", "1;")},
                 files, test::minimalPayload(), QStringLiteral("quillmark"));
    }

    TempDir m_tools;
    TempDir m_folder;
    fs::path m_frame = m_folder.write("1.jpg", "whole");
    fs::path m_leftover = m_folder.write("1.jpg_exiftool_tmp", "half");
};

TEST_F(Leftover, isRemoved)
{
    run();
    EXPECT_FALSE(fs::exists(m_leftover));
    EXPECT_EQ(readFile(m_frame), "whole");
}

TEST_F(Leftover, isRemovedWhereItMayNotBeWrittenTo)
{
    fs::permissions(m_leftover, fs::perms::owner_read);
    run();
    EXPECT_FALSE(fs::exists(m_leftover));
}

TEST_F(Leftover, staysWhileAnotherRunWritesThere)
{
    const WritingMark another(m_folder.path());
    run();
    EXPECT_TRUE(fs::exists(m_leftover));
}

TEST_F(Leftover, staysWhereItIsAllThatIsLeft)
{
    fs::remove(m_frame);
    run();
    EXPECT_TRUE(fs::exists(m_leftover));
}

/// An exiftool that somebody else started marks nothing.
TEST_F(Leftover, staysWhileAnyoneHasItOpen)
{
    for (const int way : {O_WRONLY, O_RDWR, O_RDONLY}) {
        const UniqueFd another(::open(m_leftover.c_str(), way | O_CLOEXEC));
        ASSERT_TRUE(another);
        run();
        EXPECT_TRUE(fs::exists(m_leftover));
    }
    run();
    EXPECT_FALSE(fs::exists(m_leftover));
}

/// Runs of nested folders mark different ones.
TEST_F(Leftover, staysWhileARunOverAFolderAboveIsAtIt)
{
    const fs::path frame = m_folder.write("sub/2.jpg", "whole");
    const fs::path temporary = m_folder.write("sub/2.jpg_exiftool_tmp", "half");
    const WritingMark above(m_folder.path());
    {
        const UniqueFd writer(::open(temporary.c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_TRUE(writer);
        run({frame});
        EXPECT_TRUE(fs::exists(temporary));
    }
    run({frame});
    EXPECT_FALSE(fs::exists(temporary));
}

TEST_F(Leftover, isAFileAndNothingElse)
{
    const fs::path link = m_folder / "2.jpg_exiftool_tmp";
    fs::create_symlink(m_frame, link);
    m_folder.write("2.jpg", "whole");
    fs::create_directory(m_folder / "3.jpg_exiftool_tmp");
    run({m_folder / "2.jpg", m_folder.write("3.jpg", "whole")});
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(readFile(m_frame), "whole");
    EXPECT_TRUE(fs::exists(m_folder / "3.jpg_exiftool_tmp"));
}

/// A folder stands for the images directly in it.
TEST_F(Leftover, inAFolderThatIsWrittenToIsRemoved)
{
    const fs::path folder = m_folder / "album.jpg";
    m_folder.write("album.jpg/.2.jpg", "whole");
    const fs::path leftover = m_folder.write("album.jpg/.2.jpg_exiftool_tmp", "half");
    const fs::path alone = m_folder.write("album.jpg/3.jpg_exiftool_tmp", "all that is left");
    m_folder.write("album.jpg/sub.jpg/4.jpg", "whole");
    const fs::path below = m_folder.write("album.jpg/sub.jpg/4.jpg_exiftool_tmp", "half");
    {
        const UniqueFd another(::open(leftover.c_str(), O_WRONLY | O_CLOEXEC));
        run({folder});
        EXPECT_TRUE(fs::exists(leftover));
    }
    fs::create_directory_symlink(folder, m_folder / "link.jpg");
    run({m_folder / "link.jpg"});
    EXPECT_FALSE(fs::exists(leftover));
    EXPECT_TRUE(fs::exists(alone));
    EXPECT_TRUE(fs::exists(below));
}

/// exiftool closes a file before it renames it.
TEST_F(Leftover, isGivenTimeToGetItsName)
{
    struct stat status {};
    const UniqueFd leftover(::open(m_leftover.c_str(), O_PATH | O_CLOEXEC));
    ASSERT_EQ(::fchmodat(AT_FDCWD, m_leftover.c_str(), S_IRUSR | S_IWUSR, 0), 0);
    ASSERT_EQ(::fstat(leftover.get(), &status), 0);
    const auto changed = std::chrono::seconds(status.st_ctim.tv_sec) +
                         std::chrono::nanoseconds(status.st_ctim.tv_nsec);
    run();
    EXPECT_FALSE(fs::exists(m_leftover));
    EXPECT_GE(std::chrono::system_clock::now().time_since_epoch() - changed,
              std::chrono::seconds(1));
}

} // namespace
} // namespace quillmark
