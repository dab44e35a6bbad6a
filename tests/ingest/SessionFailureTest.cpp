// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/SessionFixture.h"
#include "support/FileSizeLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using ::testing::HasSubstr;

/// Ways in which exiftool fails a run, with a part of what the user reads.
struct Failure {
    const char *title;
    const char *script;
    const char *text;
};

class FailingExiftool : public SessionTest, public ::testing::WithParamInterface<Failure>
{};

TEST_P(FailingExiftool, isShownAndCostsNothing)
{
    fillRoll();
    const std::string original = readFile(roll / "01.jpg");
    scan();
    standIn(GetParam().script);
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr(GetParam().text));
    EXPECT_EQ(readFile(roll / "01.jpg"), original);
    EXPECT_EQ(readFile(roll / "_originals" / "01.jpg"), original);

    // The next ingest works.
    fs::remove_all(applicationFolder());
    session.setState(Session::Idle{});
    scan();
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
}

INSTANTIATE_TEST_SUITE_P(
    IngestViewModel, FailingExiftool,
    ::testing::Values(
        Failure{"status", "echo 'Error: no such tag' >&2; exit 1",
                "exiftool exited with code 1\n\nError: no such tag\n"},
        Failure{"killed", "kill -9 $$", "exiftool exited with code 137\n\n"},
        Failure{"floodingBothPipes",
                "head -c 1048576 /dev/zero | tr '\\0' o; head -c 1048576 /dev/zero | tr '\\0' e "
                ">&2; exit 2",
                "exiftool exited with code 2\n\neeee"},
        Failure{"stopped", "kill -STOP $$; exit 3", "exiftool exited with code 3\n\n"},
        Failure{"stoppedForEver", "exec >&- 2>&-; while :; do kill -STOP $$; done",
                "exiftool exited with code 137\n\n"},
        Failure{"closingItsStreamsEarly", "exec >&- 2>&-; exit 4",
                "exiftool exited with code 4\n\n"},
        Failure{"leavingSomebodyWhoHoldsItsStreams", "yes & yes >&2 & echo wrong >&2; exit 5",
                "exiftool exited with code 5\n\n"}),
    [](const auto &failure) { return std::string(failure.param.title); });

TEST_F(SessionTest, warningsOfASuccessfulRunAreNoFailure)
{
    fillRoll();
    scan();
    standIn("echo 'Warning: minor' >&2");
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
}

TEST_F(SessionTest, aFileThatVanishedBeforeTheRunIsNamed)
{
    fillRoll();
    scan();
    fs::remove(roll / "03.tif");
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("03.tif"));
}

TEST_F(SessionTest, aFolderThatVanishedBeforeTheRunIsAnError)
{
    fillRoll();
    for (const BackupMode mode : allBackupModes) {
        session.setBackupMode(mode);
        await(session.scan(roll.path()));
        fs::rename(roll.path(), roll.path().string() + "-elsewhere");
        await(session.runIngest());
        EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("01.jpg"));
        fs::remove_all(roll.path());
        fs::rename(roll.path().string() + "-elsewhere", roll.path());
    }
}

TEST_F(SessionTest, aKilledExiftoolDoesNotBlockTheNextRun)
{
    fillRoll();
    scan();
    const std::string leftover = (roll / "01.jpg").string() + "_exiftool_tmp";
    standIn("echo half > '" + leftover + "'; kill -9 $$");
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("137"));
    EXPECT_FALSE(fs::exists(leftover));

    fs::remove_all(applicationFolder());
    roll.write("01.jpg_exiftool_tmp", "left by a program that ended with its child");
    scan();
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
    EXPECT_FALSE(fs::exists(leftover));
}
TEST_F(SessionTest, aFullDiskIsAnErrorThatCostsNothingAndTheNextRunWorks)
{
    fillRoll();
    const std::string original = readFile(roll / "01.jpg");
    roll.write("_originals/01.jpg", "the backup of an earlier run");
    scan();
    {
        const FileSizeLimit full(1000);
        await(session.runIngest());
    }
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("01.jpg"));
    EXPECT_EQ(readFile(roll / "01.jpg"), original);
    EXPECT_EQ(readFile(roll / "_originals" / "01.jpg"), "the backup of an earlier run");

    scan();
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
    EXPECT_EQ(readFile(roll / "_originals" / "01.jpg"), original);
}

TEST_F(SessionTest, anOutputFolderThatCannotBeMadeIsAnErrorAndLeavesTheRoll)
{
    fillRoll();
    const std::string original = readFile(roll / "01.jpg");
    scan();
    roll.write("_originals", "a file in the way");
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("_originals"));
    EXPECT_EQ(readFile(roll / "01.jpg"), original);
}

TEST_F(SessionTest, aSecondRecursiveRunKeepsTheTrueBackups)
{
    fillRoll();
    const std::string original = readFile(roll / "01.jpg");
    session.setRecursive(true);
    scan();
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
    scan();
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("_originals/01.jpg"));
    EXPECT_EQ(readFile(roll / "_originals" / "01.jpg"), original);
}

} // namespace
} // namespace quillmark::test
