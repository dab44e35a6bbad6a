// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ChildProcess.h"

#include "Programs.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h> // NOLINT(modernize-deprecated-headers): sigaction is not in <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <future>
#include <stdexcept>
#include <string>
#include <system_error>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::TempDir;
using test::writeProgram;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class ChildProcess : public ::testing::Test
{
protected:
    ChildResult runShell(const std::string &script,
                         const std::vector<std::string> &arguments = {}) const
    {
        return runChild(writeProgram(m_folder, "program", "#!/bin/sh\n" + script), arguments);
    }

    ChildResult runPerl(const std::string &script,
                        const std::vector<std::string> &arguments = {}) const
    {
        return runChild(writeProgram(m_folder, "program", "#!/usr/bin/perl\n" + script), arguments);
    }

    TempDir m_folder;
};

/// What runChild throws.
std::system_error launchFailure(const fs::path &program, const std::vector<std::string> &arguments)
{
    try {
        runChild(program, arguments);
    } catch (const std::system_error &error) {
        return error;
    }
    throw std::logic_error("the program was started");
}

/// So many paths of 109 bytes each; with its end and its pointer, the kernel counts 118.
std::vector<std::string> longPaths(std::size_t count)
{
    return {count, "/" + std::string(108, 'x')};
}

struct Pipe {
    Pipe()
    {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("cannot make a pipe");
        }
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;
    ~Pipe()
    {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    std::array<int, 2> ends{};
};

rlimit stackLimit()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_STACK, &limit);
    return limit;
}

TEST_F(ChildProcess, streamsAndStatusComeBack)
{
    const ChildResult result = runShell("printf out; printf err >&2; exit 3");
    EXPECT_EQ(result.output, "out");
    EXPECT_EQ(result.errors, "err");
    EXPECT_EQ(result.status, 3);
}

TEST_F(ChildProcess, warningsAreNoFailure)
{
    const ChildResult result = runShell("echo 'Warning: something' >&2");
    EXPECT_EQ(result.errors, "Warning: something\n");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ChildProcess, highestStatusIsKept)
{
    EXPECT_EQ(runShell("exit 255").status, 255);
}

TEST_F(ChildProcess, childThatASignalEndedIsNoSuccess)
{
    EXPECT_EQ(runShell("kill -KILL $$").status, 128 + SIGKILL);
    EXPECT_EQ(runShell("printf partly; kill -TERM $$").output, "partly");
}

TEST_F(ChildProcess, floodsOfBothStreamsAreDrainedWhileItRuns)
{
    // Each stream is filled to far beyond what a pipe holds before the other is touched.
    constexpr std::size_t megabyte = 1 << 20;
    const ChildResult result = runPerl("$| = 1; my $block = 'x' x (1 << 20);\n"
                                       "print STDERR $block; print STDOUT $block;\n"
                                       "print STDERR $block; print STDOUT $block;\n");
    EXPECT_EQ(result.output, std::string(2 * megabyte, 'x'));
    EXPECT_EQ(result.errors, std::string(2 * megabyte, 'x'));
    EXPECT_EQ(result.status, 0);
}

TEST_F(ChildProcess, streamsMayBeClosedEarly)
{
    const ChildResult result = runShell("printf before; exec >&- 2>&-; exit 4");
    EXPECT_EQ(result.output, "before");
    EXPECT_EQ(result.status, 4);
}

TEST_F(ChildProcess, argumentsArriveByteByByte)
{
    const std::vector<std::string> arguments{
        "",      "two words", "\"quotes\" and 'quotes'", "$HOME `id` *",     "line\nbreak\r\n",
        "-dash", "@at",       "caf\xe9 \xff\xfe",        "\xf0\x9f\x8c\xab", "trailing\\"};
    std::string expected;
    for (const std::string &argument : arguments) {
        expected += argument + '\0';
    }
    EXPECT_EQ(runPerl("print map { \"$_\\0\" } @ARGV;", arguments).output, expected);
}

TEST_F(ChildProcess, environmentFolderAndInputAreTheCallers)
{
    ::setenv("QUILLMARK_TEST_VARIABLE", "kept as it is", 1);
    const ChildResult result = runShell("printf '%s\\n' \"$QUILLMARK_TEST_VARIABLE\"\n"
                                        "pwd -P\n"
                                        "readlink /proc/self/fd/0");
    ::unsetenv("QUILLMARK_TEST_VARIABLE");
    EXPECT_EQ(result.output, "kept as it is\n" + fs::canonical(fs::current_path()).native() + "\n" +
                                 fs::read_symlink("/proc/self/fd/0").native() + "\n");
}

TEST_F(ChildProcess, signalsAreHandledInTheDefaultWay)
{
    struct Disturbed {
        Disturbed()
        {
            sigset_t blocked;
            ::sigemptyset(&blocked);
            ::sigaddset(&blocked, SIGTERM);
            ::pthread_sigmask(SIG_BLOCK, &blocked, &mask);
            struct sigaction ignore = {};
            ignore.sa_handler = SIG_IGN;
            ::sigaction(SIGPIPE, &ignore, &pipe);
        }
        ~Disturbed()
        {
            ::sigaction(SIGPIPE, &pipe, nullptr);
            ::pthread_sigmask(SIG_SETMASK, &mask, nullptr);
        }
        sigset_t mask = {};
        struct sigaction pipe = {};
    } disturbed;
    EXPECT_EQ(runShell("kill -TERM $$; exit 0").status, 128 + SIGTERM);
    EXPECT_EQ(runShell("kill -PIPE $$; exit 0").status, 128 + SIGPIPE);
}

TEST_F(ChildProcess, keptDescriptorIsOpenAndOthersAreNot)
{
    Pipe pipe;
    const ChildResult result = runChildKeeping(
        pipe.ends[1],
        writeProgram(m_folder, "program",
                     "#!/usr/bin/perl\n"
                     "print map { -e \"/proc/self/fd/$_\" ? 'open ' : 'closed ' } @ARGV;"),
        {std::to_string(pipe.ends[0]), std::to_string(pipe.ends[1])});
    EXPECT_EQ(result.output, "closed open ");
}

TEST_F(ChildProcess, childEndsWithAProgramThatIsKilled)
{
    // The child of a killed program becomes ours, so that its end can be waited for.
    ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    const fs::path program = writeProgram(m_folder, "program",
                                          "#!/usr/bin/perl\n"
                                          "open my $test, '>&=', $ARGV[0] or die;\n"
                                          "syswrite $test, pack 'i', $$;\n"
                                          "alarm 60; sleep;\n");
    Pipe pipe;
    const pid_t caller = ::fork();
    if (caller == 0) {
        runChildKeeping(pipe.ends[1], program, {std::to_string(pipe.ends[1])});
        ::_exit(0);
    }
    pid_t child = 0;
    ASSERT_EQ(::read(pipe.ends[0], &child, sizeof child), ssize_t{sizeof child});
    ::kill(caller, SIGKILL);
    int status = 0;
    EXPECT_EQ(::waitpid(caller, &status, 0), caller);
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    ::prctl(PR_SET_CHILD_SUBREAPER, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGINT);
}

TEST_F(ChildProcess, missingProgramIsNamed)
{
    const std::system_error error = launchFailure(m_folder / "no such program", {});
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    EXPECT_THAT(error.what(), MatchesRegex("\"/.*/no such program\" could not be started: .+"));
}

TEST_F(ChildProcess, programThatMayNotBeExecutedIsNamed)
{
    const std::system_error error = launchFailure(m_folder.write("plain file", "#!/bin/sh\n"), {});
    EXPECT_EQ(error.code(), std::errc::permission_denied);
    EXPECT_THAT(error.what(), MatchesRegex("\"/.*/plain file\" could not be started: .+"));
}

TEST_F(ChildProcess, fileThatIsNoProgramIsNotGivenToAShell)
{
    const fs::path file = writeProgram(m_folder, "program", "exit 0\n");
    EXPECT_EQ(launchFailure(file, {}).code(), std::errc::executable_format_error);
}

TEST_F(ChildProcess, nulInAnArgumentIsNotCutSilently)
{
    const fs::path program = writeProgram(m_folder, "program", "#!/bin/sh\n");
    EXPECT_EQ(launchFailure(program, {std::string("a\0b", 3)}).code(), std::errc::invalid_argument);
}

TEST_F(ChildProcess, argumentsUpToTheKernelsLimitFit)
{
    if (stackLimit().rlim_max < rlim_t{24} << 20U) {
        GTEST_SKIP() << "the hard stack limit leaves less room than 6 MB";
    }
    const std::vector<std::string> arguments = longPaths(51'000);
    const ChildResult result =
        runPerl("my $n = 0; $n += length for @ARGV; print scalar(@ARGV) . ' ' . $n;", arguments);
    EXPECT_EQ(result.output, "51000 5559000");
    EXPECT_EQ(result.status, 0);
}

TEST_F(ChildProcess, argumentsBeyondTheLimitAreALaunchError)
{
    const fs::path program = writeProgram(m_folder, "program", "#!/bin/sh\n");
    const std::system_error error = launchFailure(program, longPaths(70'000));
    EXPECT_EQ(error.code(), std::errc::argument_list_too_long);
    EXPECT_THAT(error.what(), HasSubstr("are too long together: "));

    // One argument alone may have 128 KiB.
    const std::system_error single = launchFailure(program, {std::string(200'000, 'x')});
    EXPECT_EQ(single.code(), std::errc::argument_list_too_long);
}

TEST_F(ChildProcess, stackLimitIsAsBefore)
{
    const rlimit before = stackLimit();
    runShell("exit 0");
    EXPECT_EQ(stackLimit().rlim_cur, before.rlim_cur);
    EXPECT_THROW(runChild(m_folder / "missing", {}), std::system_error);
    EXPECT_EQ(stackLimit().rlim_cur, before.rlim_cur);
    EXPECT_EQ(stackLimit().rlim_max, before.rlim_max);
}

TEST_F(ChildProcess, severalMayRunAtATime)
{
    const rlimit before = stackLimit();
    const fs::path program =
        writeProgram(m_folder, "program", "#!/bin/sh\nprintf %s \"$1\"; exit \"$1\"\n");
    std::vector<std::future<ChildResult>> running;
    running.reserve(12);
    for (int i = 0; i < 12; ++i) {
        running.push_back(std::async(std::launch::async, runChild, program,
                                     std::vector<std::string>{std::to_string(i)}));
    }
    for (int i = 0; i < 12; ++i) {
        const ChildResult result = running[static_cast<std::size_t>(i)].get();
        EXPECT_EQ(result.output, std::to_string(i));
        EXPECT_EQ(result.status, i);
    }
    EXPECT_EQ(stackLimit().rlim_cur, before.rlim_cur);
}

TEST_F(ChildProcess, statusThatTheSystemDidNotKeepIsNoSuccess)
{
    struct ChildrenIgnored {
        ChildrenIgnored()
        {
            struct sigaction ignore = {};
            ignore.sa_handler = SIG_IGN;
            ::sigaction(SIGCHLD, &ignore, &before);
        }
        ~ChildrenIgnored() { ::sigaction(SIGCHLD, &before, nullptr); }
        struct sigaction before = {};
    } ignored;
    EXPECT_THROW(runShell("exit 0"), std::system_error);
}

} // namespace
} // namespace quillmark
