// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ChildProcess.h"
#include "faults/SystemCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace quillmark::test {
namespace {

using ::testing::HasSubstr;

Fault inChild(const std::string &function, int occurrence, int error)
{
    return {
        .function = function, .subject = "child itself", .occurrence = occurrence, .error = error};
}

/// What a child meets on its way to its program.
TEST(ChildFault, isToldWithItsReason)
{
    for (const Fault &fault : {inChild("prctl", 1, EPERM), inChild("dup2", 1, EMFILE),
                               inChild("dup2", 2, EMFILE), inChild("execve", 1, ENOMEM)}) {
        const WatchedCalls watched({}, {fault});
        try {
            runChild("/bin/true", {});
            ADD_FAILURE() << fault.function << " did not matter";
        } catch (const std::system_error &error) {
            EXPECT_EQ(error.code().value(), fault.error) << fault.function;
            EXPECT_THAT(error.what(), HasSubstr("\"/bin/true\" could not be started"));
        }
        EXPECT_TRUE(watched.faultsMet()) << fault.function;
    }
}

TEST(ChildFault, ofASignalInBetweenDoesNotMatter)
{
    for (const int occurrence : {1, 2}) {
        const WatchedCalls watched({}, {inChild("dup2", occurrence, EINTR)});
        EXPECT_EQ(runChild("/bin/sh", {"-c", "printf said"}).output, "said");
        EXPECT_TRUE(watched.faultsMet());
    }
}

TEST(ChildFault, isToldThoughASignalCameInBetween)
{
    const WatchedCalls watched({}, {inChild("execve", 1, EIO), inChild("write", 1, EINTR)});
    EXPECT_THROW(runChild("/bin/true", {}), std::system_error);
    EXPECT_TRUE(watched.faultsMet());
}

TEST(ChildFault, isToldAmongItsWordsWhereItCannotBeReported)
{
    for (const int error : {EIO, 0}) { // 0: half of the report only
        const WatchedCalls watched({}, {inChild("execve", 1, ENOMEM), inChild("write", 1, error)});
        const ChildResult result = runChild("/bin/true", {});
        EXPECT_EQ(result.status, 127);
        EXPECT_THAT(result.errors, HasSubstr("could not be started"));
        EXPECT_TRUE(watched.faultsMet());
    }
}

TEST(ChildFault, ofWhatIsOnlyForTheBetterDoesNotMatter)
{
    for (const char *function : {"getrlimit", "setrlimit", "sigaction", "sigprocmask"}) {
        const WatchedCalls watched({}, {inChild(function, 1, EPERM)});
        EXPECT_EQ(runChild("/bin/sh", {"-c", "exit 3"}).status, 3) << function;
        EXPECT_TRUE(watched.faultsMet()) << function;
    }
}

/// What both streams brought of a child that says "said" and "warned", while a call failed.
ChildResult readWith(const Fault &fault)
{
    const WatchedCalls watched({}, {fault});
    const ChildResult result = runChild("/bin/sh", {"-c", "printf said; printf warned >&2"});
    EXPECT_TRUE(watched.faultsMet()) << fault.function << fault.error;
    EXPECT_EQ(result.status, 0);
    return result;
}

TEST(ChildFault, ofWaitingForItsWordsDoesNotMatter)
{
    for (const int error : {EINTR, ENOMEM}) {
        const ChildResult result = readWith({"poll", "child's streams", 1, error});
        EXPECT_EQ(result.output, "said");
        EXPECT_EQ(result.errors, "warned");
    }
}

TEST(ChildFault, ofASignalWhileItIsReadDoesNotMatter)
{
    EXPECT_EQ(readWith({"read", "child's output", 1, EINTR}).output, "said");
    EXPECT_EQ(readWith({"read", "child's errors", 1, EINTR}).errors, "warned");
}

TEST(ChildFault, leavesNothingOfAStreamOfWhichAPartCouldNotBeRead)
{
    for (const int occurrence : {1, Fault::always}) {
        const ChildResult silent = readWith({"read", "child's output", occurrence, EIO});
        EXPECT_EQ(silent.output, "");
        EXPECT_EQ(silent.errors, "warned");
        EXPECT_EQ(readWith({"read", "child's errors", occurrence, EIO}).errors, "");
    }
}

} // namespace
} // namespace quillmark::test
