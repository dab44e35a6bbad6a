// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/WritingMark.h"

#include "Programs.h"
#include "embedding/ChildProcess.h"
#include "support/Printers.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <chrono>
#include <future>
#include <optional>
#include <string>
#include <utility>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::TempDir;
using test::writeProgram;

bool isAlone(const fs::path &folder)
{
    bool alone = false;
    WritingMark(folder).ifAlone([&alone] { alone = true; });
    return alone;
}

TEST(WritingMark, isSeenByOthersWhileItStands)
{
    const TempDir folder;
    EXPECT_TRUE(isAlone(folder.path()));
    {
        const WritingMark mark(folder.path());
        EXPECT_FALSE(isAlone(folder.path()));
        EXPECT_TRUE(isAlone(folder.path().parent_path()));
    }
    EXPECT_TRUE(isAlone(folder.path()));
}

TEST(WritingMark, standsAfterAskingWhetherItIsAlone)
{
    const TempDir folder;
    WritingMark first(folder.path());
    first.ifAlone([] {});
    EXPECT_FALSE(isAlone(folder.path()));
    WritingMark second(folder.path());
    second.ifAlone([] { FAIL() << "there is another mark"; });
    first = WritingMark("/");
    EXPECT_FALSE(isAlone(folder.path()));
}

TEST(WritingMark, standsWhileAChildLives)
{
    const TempDir folder;
    const TempDir elsewhere;
    const fs::path gate = elsewhere / "gate";
    ASSERT_EQ(::mkfifo(gate.c_str(), S_IRWXU), 0);
    // Leaves a process behind that ends with the writer of the pipe, and that alone has the mark.
    const fs::path program = writeProgram(elsewhere, "program",
                                          "#!/bin/sh\n"
                                          "exec >/dev/null 2>&1\n"
                                          "cat \"$1\" &\n");
    const UniqueFd writer(::open(gate.c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(writer);
    {
        const WritingMark mark(folder.path());
        EXPECT_EQ(runChildKeeping(mark.descriptor(), program, {gate.native()}).status, 0);
    }
    EXPECT_FALSE(isAlone(folder.path()));
}

TEST(WritingMark, folderThatIsNotThereIsNotMarked)
{
    const TempDir folder;
    WritingMark mark(folder / "gone");
    EXPECT_EQ(mark.descriptor(), std::nullopt);
    mark.ifAlone([] { FAIL() << "nobody can tell"; });
}

/// Whoever else locks a folder for itself may do so for days.
TEST(WritingMark, isNotWaitedForWhereSomebodyHasTheFolderForHimself)
{
    const TempDir folder;
    UniqueFd foreign(::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    ASSERT_EQ(::flock(foreign.get(), LOCK_EX | LOCK_NB), 0);

    auto marking = std::async(std::launch::async, [&] {
        WritingMark mark(folder.path());
        bool worked = false;
        mark.ifAlone([&worked] { worked = true; });
        return std::pair(mark.descriptor(), worked);
    });
    EXPECT_EQ(marking.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    foreign.reset(); // else a mark that waits would do so for ever
    EXPECT_EQ(marking.get(), std::pair(std::optional<int>(), false));
}

TEST(CommonFolder, isTheNearestToAllFiles)
{
    EXPECT_EQ(commonFolder({"/roll/1.jpg"}), "/roll");
    EXPECT_EQ(commonFolder({"/roll/1.jpg", "/roll/2.jpg"}), "/roll");
    EXPECT_EQ(commonFolder({"/roll/a/1.jpg", "/roll/a/b/2.jpg"}), "/roll/a");
    EXPECT_EQ(commonFolder({"/roll/ab/1.jpg", "/roll/abc/1.jpg"}), "/roll");
    EXPECT_EQ(commonFolder({"/roll/1.jpg", "/scans/1.jpg"}), "/");
    EXPECT_EQ(commonFolder({"/1.jpg", "/roll/1.jpg"}), "/");
    EXPECT_EQ(commonFolder({"/roll/a/b/c/1.jpg", "/roll/a/2.jpg"}), "/roll/a");
    EXPECT_EQ(commonFolder({"/roll/a/b/c/1.jpg", "/roll/b/2.jpg", "/scans/3.jpg"}), "/");
    EXPECT_EQ(commonFolder({"/roll/a/1.jpg", "/roll/a"}), "/roll");
    EXPECT_EQ(commonFolder({"/roll/a", "/roll/a/1.jpg"}), "/roll");
    EXPECT_EQ(commonFolder({"/roll//1.jpg", "/roll//2.jpg"}), "/roll/");
}

} // namespace
} // namespace quillmark
