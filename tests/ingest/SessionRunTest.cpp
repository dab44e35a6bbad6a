// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/SessionFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST_F(SessionTest, runBacksUpAndTagsTheRoll)
{
    fillRoll();
    scan();
    std::vector<std::string> originals;
    for (const char *name : {"01.jpg", "02.jpg", "03.tif"}) {
        originals.push_back(readFile(roll / name));
    }
    await(session.runIngest());
    const IngestOutcome outcome = in<Session::Done>(session).outcome;
    EXPECT_EQ(outcome.mutated, outcome.plan.rollFiles);
    ASSERT_THAT(outcome.backups, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(readFile(outcome.backups[i]), originals[i]);
        EXPECT_EQ(tagOf(outcome.mutated[i], QStringLiteral("EXIF:Make")),
                  QStringLiteral("Kestrel"));
        EXPECT_EQ(tagOf(outcome.mutated[i], QStringLiteral("XMP-quillmark:GeneratorVersion")),
                  QStringLiteral("quillmark-macos@0.0.0"));
        EXPECT_EQ(tagOf(outcome.mutated[i], QStringLiteral("IPTC:City")), *fullPayload().location);
    }
}

TEST_F(SessionTest, runUsesTheBackupModeOfItsMoment)
{
    fillRoll();
    session.setBackupMode(BackupMode::none);
    scan();
    session.setBackupMode(BackupMode::writeCopies);
    const std::string original = readFile(roll / "01.jpg");
    await(session.runIngest());
    const IngestOutcome outcome = in<Session::Done>(session).outcome;
    EXPECT_EQ(outcome.plan.backupMode, BackupMode::writeCopies);
    EXPECT_EQ(outcome.mutated.front(), roll / "_tagged" / "01.jpg");
    EXPECT_THAT(outcome.backups, IsEmpty());
    EXPECT_EQ(readFile(roll / "01.jpg"), original);
    EXPECT_EQ(tagOf(roll / "_tagged" / "01.jpg", QStringLiteral("EXIF:Model")),
              QStringLiteral("K2"));
}

TEST_F(SessionTest, runInPlaceMakesNoFolder)
{
    fillRoll();
    session.setBackupMode(BackupMode::none);
    scan();
    await(session.runIngest());
    EXPECT_EQ(in<Session::Done>(session).outcome.mutated,
              in<Session::Done>(session).outcome.plan.rollFiles);
    EXPECT_FALSE(fs::exists(roll / "_originals"));
    EXPECT_FALSE(fs::exists(roll / "_tagged"));
}

TEST_F(SessionTest, aPlanWithoutFilesCanBeRun)
{
    session.setState(Session::Ready{{roll.path(), {}, {}, BackupMode::none}});
    await(session.runIngest());
    EXPECT_THAT(in<Session::Done>(session).outcome.mutated, IsEmpty());
    EXPECT_TRUE(fs::is_directory(roll / "_originals"));
}
TEST_F(SessionTest, theEventLoopTurnsWhileWriting)
{
    fillRoll();
    scan();
    const TempDir signal;
    // The child ends only once the event loop, turning meanwhile, has written the file.
    standIn("while [ ! -e '" + (signal / "go").string() + "' ]; do :; done");
    QTimer::singleShot(0, &session, [&] { signal.write("go", ""); });
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
}

} // namespace
} // namespace quillmark::test
