// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/SessionFixture.h"
#include "manual/LastUsedPayloadStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

TEST_F(SessionTest, manualPayloadIsWrittenAndRemembered)
{
    const fs::path frame = writeFrame(roll / "caf\xE9.jpg");
    session.setState(Session::ManualEntry{roll.path(), {}});
    SlatePayload payload = minimalPayload();
    payload.notes = QStringLiteral("typed");
    await(session.submitManual(payload));
    const IngestPlan plan = in<Session::Done>(session).outcome.plan;
    EXPECT_EQ(plan.detection.file, roll.path());
    EXPECT_EQ(plan.detection.raw, QString());
    EXPECT_THAT(plan.rollFiles, ElementsAre(frame));
    EXPECT_EQ(LastUsedPayloadStore::load(), payload);
    EXPECT_TRUE(fs::exists(roll / "_originals" / "caf\xE9.jpg"));
}

TEST_F(SessionTest, manualPlanNamesThePickedFrame)
{
    const fs::path frame = writeFrame(roll / "01.jpg");
    session.setState(Session::ManualEntry{roll.path(), frame});
    await(session.submitManual(minimalPayload()));
    EXPECT_EQ(in<Session::Done>(session).outcome.plan.detection.file, frame);
}

TEST_F(SessionTest, manualPayloadIsRememberedThoughTheRunFails)
{
    writeFrame(roll / "01.jpg");
    standIn("echo broken >&2; exit 3");
    session.setState(Session::ManualEntry{roll.path(), {}});
    SlatePayload payload = minimalPayload();
    payload.notes = QStringLiteral("kept");
    await(session.submitManual(payload));
    EXPECT_EQ(in<Session::Error>(session).text,
              QStringLiteral("exiftool exited with code 3\n\nbroken\n"));
    EXPECT_EQ(LastUsedPayloadStore::load(), payload);
}

TEST_F(SessionTest, manualPayloadForAVanishedFolderIsAnErrorAndNotRemembered)
{
    LastUsedPayloadStore::save(fullPayload());
    session.setState(Session::ManualEntry{roll / "gone", {}});
    await(session.submitManual(minimalPayload()));
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("gone"));
    EXPECT_EQ(LastUsedPayloadStore::load(), fullPayload());
    EXPECT_FALSE(fs::exists(roll / "gone"));
}

TEST_F(SessionTest, aFormSubmittedTwiceRunsOnce)
{
    writeFrame(roll / "01.jpg");
    const TempDir log;
    standIn("echo run >> '" + (log / "runs").string() + "'");
    session.setState(Session::ManualEntry{roll.path(), {}});
    QCoro::Task<> first = session.submitManual(minimalPayload());
    QCoro::Task<> second = session.submitManual(minimalPayload());
    await(std::move(first));
    await(std::move(second));
    EXPECT_NO_THROW(in<Session::Done>(session));
    EXPECT_EQ(readFile(log / "runs"), "run\n");
}

TEST_F(SessionTest, anAbandonedFormWritesNothing)
{
    const TempDir other;
    const fs::path frame = writeFrame(roll / "01.jpg");
    const std::string before = readFile(frame);
    session.setState(Session::ManualEntry{roll.path(), {}});
    QCoro::Task<> submitted = session.submitManual(minimalPayload());
    session.setState(Session::ManualEntry{other.path(), {}});
    await(std::move(submitted));
    EXPECT_EQ(in<Session::ManualEntry>(session).folder, other.path());
    EXPECT_EQ(readFile(frame), before);
}

} // namespace
} // namespace quillmark::test
