// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "Programs.h"
#include "base/UniqueFd.h"
#include "embedding/ChildProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <future>
#include <string>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::TempDir;
using test::writeProgram;

/// Children that do what exiftool would not do. That each of these tests ends is a part of it.
class UnrulyChild : public ::testing::Test
{
protected:
    ChildResult run(const std::string &script) const
    {
        return runChild(writeProgram(m_folder, "program", "#!/bin/sh\n" + script),
                        {m_folder.path().native()});
    }

    /// A named pipe "gate", which holds up every reader for as long as it is kept open.
    UniqueFd closedGate() const
    {
        const fs::path gate = m_folder / "gate";
        EXPECT_EQ(::mkfifo(gate.c_str(), S_IRUSR | S_IWUSR), 0);
        return UniqueFd(::open(gate.c_str(), O_RDWR | O_CLOEXEC));
    }

    TempDir m_folder;
};

TEST_F(UnrulyChild, mayFloodBothStreamsAtOnce)
{
    constexpr std::size_t flood = std::size_t{8} << 20U;
    const ChildResult result = run("head -c 8388608 /dev/zero | tr '\\0' o &\n"
                                   "head -c 8388608 /dev/zero | tr '\\0' e >&2\n"
                                   "wait; exit 9");
    EXPECT_TRUE(result.output == std::string(flood, 'o')); // too long to be printed
    EXPECT_TRUE(result.errors == std::string(flood, 'e'));
    EXPECT_FALSE(result.errorsAreCut);
    EXPECT_EQ(result.status, 9);
}

TEST_F(UnrulyChild, maySayMoreThanMemoryHolds)
{
    constexpr std::size_t kept = std::size_t{8} << 20U;
    const ChildResult result = run("head -c 100000000 /dev/zero | tr '\\0' o &\n"
                                   "head -c 100000000 /dev/zero | tr '\\0' e >&2\n"
                                   "wait; exit 9");
    EXPECT_TRUE(result.output == std::string(kept, 'o'));
    EXPECT_TRUE(result.errors == std::string(kept, 'e'));
    EXPECT_LE(result.output.capacity() + result.errors.capacity(), 4 * kept);
    EXPECT_TRUE(result.errorsAreCut);
    EXPECT_EQ(result.status, 9);
}

TEST_F(UnrulyChild, isCutWhereItEndsWithFullPipesToo)
{
    const UniqueFd gate = closedGate();
    const ChildResult result = run("head -c 8388608 /dev/zero >&2\n"
                                   "cat <\"$1/gate\" >&2 & printf more >&2; exit 9");
    EXPECT_EQ(result.errors.size(), std::size_t{8} << 20U);
    EXPECT_TRUE(result.errorsAreCut);
}

TEST_F(UnrulyChild, isWaitedForAfterItClosedItsStreams)
{
    UniqueFd gate = closedGate();
    auto running = std::async(std::launch::async, [this] {
        return run("printf before; exec >&- 2>&-; : >\"$1/closed\"\n"
                   "read line <\"$1/gate\"; : >\"$1/worked on\"; exit 4");
    });
    ASSERT_EQ(::write(gate.get(), "go\n", 3), 3);
    const ChildResult result = running.get();
    EXPECT_EQ(result.output, "before");
    EXPECT_EQ(result.status, 4);
    EXPECT_TRUE(fs::exists(m_folder / "worked on"));
}

TEST_F(UnrulyChild, isContinuedWhereItStops)
{
    const ChildResult result = run("printf before; kill -STOP $$; printf ' after'; exit 5");
    EXPECT_EQ(result.output, "before after");
    EXPECT_EQ(result.status, 5);
}

TEST_F(UnrulyChild, isContinuedWhereItStopsWithoutStreams)
{
    const ChildResult result = run("exec >&- 2>&-; kill -TSTP $$; kill -STOP $$; exit 6");
    EXPECT_EQ(result.status, 6);
}

TEST_F(UnrulyChild, isKilledWhereItStopsForEver)
{
    const ChildResult result = run("exec >&- 2>&-; while :; do kill -STOP $$; done");
    EXPECT_EQ(result.status, 128 + SIGKILL);
}

TEST_F(UnrulyChild, mayLeaveSomebodyWhoHoldsItsStreams)
{
    const UniqueFd gate = closedGate();
    const ChildResult result = run("cat <\"$1/gate\" & printf said; printf wrong >&2; exit 7");
    EXPECT_EQ(result.output, "said");
    EXPECT_EQ(result.errors, "wrong");
    EXPECT_EQ(result.status, 7);
}

TEST_F(UnrulyChild, mayLeaveSomebodyWhoNeverStopsWriting)
{
    EXPECT_EQ(run("yes & yes >&2 & exit 8").status, 8);
}

/// Another standard input for this process and its children while it lives.
class StandardInput
{
public:
    explicit StandardInput(const UniqueFd &input)
        : m_before(::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3))
    {
        ::dup2(input.get(), STDIN_FILENO);
    }
    StandardInput(const StandardInput &) = delete;
    StandardInput &operator=(const StandardInput &) = delete;
    ~StandardInput()
    {
        if (m_before) {
            ::dup2(m_before.get(), STDIN_FILENO);
        } else {
            ::close(STDIN_FILENO);
        }
    }

private:
    UniqueFd m_before;
};

TEST_F(UnrulyChild, mayLeaveItsInputUnread)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
    const UniqueFd readEnd(ends[0]);
    const UniqueFd writeEnd(ends[1]);
    const std::string piece(4096, 'i');
    while (::write(writeEnd.get(), piece.data(), piece.size()) > 0) {
    }
    const StandardInput full(readEnd);
    const ChildResult result = run("printf out; exit 3");
    EXPECT_EQ(result.output, "out");
    EXPECT_EQ(result.status, 3);
}

class SignalledChild : public UnrulyChild, public ::testing::WithParamInterface<int>
{};

TEST_P(SignalledChild, endsInAStatusThatNamesTheSignal)
{
    const ChildResult result =
        run("ulimit -c 0; printf partly; kill -" + std::to_string(GetParam()) + " $$; exit 0");
    EXPECT_EQ(result.output, "partly");
    EXPECT_EQ(result.status, 128 + GetParam());
}

INSTANTIATE_TEST_SUITE_P(ChildProcess, SignalledChild,
                         ::testing::Values(SIGHUP, SIGINT, SIGABRT, SIGKILL, SIGSEGV, SIGPIPE,
                                           SIGTERM));

} // namespace
} // namespace quillmark
