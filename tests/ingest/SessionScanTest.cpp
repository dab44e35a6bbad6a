// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/SessionFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST_F(SessionTest, startsIdleWithBackupsAndWithoutSubfolders)
{
    EXPECT_NO_THROW(in<Session::Idle>(session));
    EXPECT_EQ(session.backupMode(), BackupMode::backupOriginals);
    EXPECT_FALSE(session.recursive());
}

TEST_F(SessionTest, scanFindsTheSlateAndPlansTheRoll)
{
    fillRoll();
    QStringList folders;
    QObject::connect(&session, &Session::stateChanged, [&] {
        if (const auto *scanning = std::get_if<Session::Scanning>(&session.state())) {
            folders.append(QString::fromStdString(scanning->folder.string()));
        }
    });
    scan();
    EXPECT_EQ(folders, QStringList(QString::fromStdString(roll.path().string())));
    const IngestPlan plan = in<Session::Ready>(session).plan;
    EXPECT_EQ(plan.folder, roll.path());
    EXPECT_EQ(plan.detection.file, roll / "02.jpg");
    EXPECT_EQ(plan.detection.payload, fullPayload());
    EXPECT_THAT(plan.rollFiles, ElementsAre(roll / "01.jpg", roll / "02.jpg", roll / "03.tif"));
    EXPECT_EQ(plan.backupMode, BackupMode::backupOriginals);
}

TEST_F(SessionTest, aFolderThatIsOpenedIsScannedWhileTheCallerGoesOn)
{
    fillRoll();
    bool over = false;
    QEventLoop loop;
    session.openFolder(roll.path());
    EXPECT_EQ(in<Session::Scanning>(session).folder, roll.path());
    QObject::connect(&session, &Session::stateChanged, &loop, [&] {
        over = true;
        loop.quit();
    });
    runUntil(over, loop, std::chrono::seconds(60));
    EXPECT_EQ(in<Session::Ready>(session).plan.detection.file, roll / "02.jpg");
}

TEST_F(SessionTest, changesDuringAScanDoNotAffectItsPlan)
{
    fillRoll();
    fs::create_directory(roll / "sub");
    writeFrame(roll / "sub" / "04.jpg");
    QCoro::Task<> scanning = session.scan(roll.path());
    session.setBackupMode(BackupMode::none);
    session.setRecursive(true);
    await(std::move(scanning));
    EXPECT_EQ(in<Session::Ready>(session).plan.backupMode, BackupMode::backupOriginals);
    EXPECT_THAT(in<Session::Ready>(session).plan.rollFiles, SizeIs(3));
}

TEST_F(SessionTest, changesAreAnnouncedBeforeAndAfter)
{
    QStringList seen;
    QObject::connect(&session, &Session::backupModeWillChange,
                     [&] { seen += rawValue(session.backupMode()); });
    QObject::connect(&session, &Session::backupModeChanged,
                     [&] { seen += rawValue(session.backupMode()); });
    session.setBackupMode(BackupMode::none);
    session.setBackupMode(BackupMode::none);
    EXPECT_EQ(seen, QStringList({QStringLiteral("backup-originals"), QStringLiteral("none")}));

    int idleBefore = 0;
    QObject::connect(&session, &Session::stateWillChange,
                     [&] { idleBefore += std::holds_alternative<Session::Idle>(session.state()); });
    session.setState(Session::Error{QStringLiteral("x")});
    EXPECT_EQ(idleBefore, 1);
}

TEST_F(SessionTest, noSlateLeadsToTheFailedDetectionWithItsCount)
{
    writeFrame(roll / "01.jpg");
    roll.write("02.jpg", "corrupt");
    scan();
    EXPECT_EQ(in<Session::DetectionFailed>(session).folder, roll.path());
    EXPECT_EQ(in<Session::DetectionFailed>(session).triedCount, 2);
}

TEST_F(SessionTest, noImagesIsAnError)
{
    const QString text = QStringLiteral("Folder contains no JPG or TIFF images.");
    scan();
    EXPECT_EQ(in<Session::Error>(session).text, text);
    await(session.scan(roll / "gone"));
    EXPECT_EQ(in<Session::Error>(session).text, text);
    await(session.scan(roll.write("dropped.jpg", "a file")));
    EXPECT_EQ(in<Session::Error>(session).text, text);
}

TEST_F(SessionTest, retryTriesThePickedFrame)
{
    writeFrame(roll / "01.jpg");
    const TempDir elsewhere;
    const fs::path slate = writeFrame(elsewhere / "slate.jpg", {slatePayloadToJson(fullPayload())});
    scan();
    session.setBackupMode(BackupMode::none);
    await(session.retryWithSlate(slate));
    const IngestPlan plan = in<Session::Ready>(session).plan;
    EXPECT_EQ(plan.detection.file, slate);
    EXPECT_THAT(plan.rollFiles, ElementsAre(roll / "01.jpg"));
    EXPECT_EQ(plan.backupMode, BackupMode::none);
}

TEST_F(SessionTest, retryWithoutASlateLeadsToManualEntryWithThatFrame)
{
    for (const fs::path &picked : {writeFrame(roll / "01.jpg"), roll / "gone.jpg"}) {
        session.setState(Session::DetectionFailed{roll.path(), 1});
        await(session.retryWithSlate(picked));
        EXPECT_EQ(in<Session::ManualEntry>(session).folder, roll.path());
        EXPECT_EQ(in<Session::ManualEntry>(session).slateImage, picked);
    }
}

TEST_F(SessionTest, retryPlansWithoutFilesWhereTheFolderIsGone)
{
    const fs::path slate = writeFrame(roll / "slate.jpg", {slatePayloadToJson(fullPayload())});
    session.setState(Session::DetectionFailed{roll / "gone", 1});
    await(session.retryWithSlate(slate));
    EXPECT_THAT(in<Session::Ready>(session).plan.rollFiles, IsEmpty());
}

TEST_F(SessionTest, operationsDoNothingInOtherStates)
{
    const fs::path frame = writeFrame(roll / "01.jpg");
    const std::string before = readFile(frame);
    const Session::State states[] = {
        Session::Idle{}, Session::Scanning{roll.path()},      Session::Writing{},
        Session::Done{}, Session::Error{QStringLiteral("x")},
    };
    for (const Session::State &state : states) {
        session.setState(state);
        await(session.retryWithSlate(frame));
        session.enterManually(frame);
        await(session.runIngest());
        await(session.submitManual(minimalPayload()));
        EXPECT_EQ(session.state().index(), state.index());
    }
    session.setState(Session::ManualEntry{roll.path(), {}});
    await(session.retryWithSlate(frame));
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::ManualEntry>(session));
    session.setState(Session::DetectionFailed{roll.path(), 1});
    await(session.submitManual(minimalPayload()));
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::DetectionFailed>(session));
    EXPECT_EQ(readFile(frame), before);
    EXPECT_FALSE(fs::exists(roll / "_originals"));
}
TEST_F(SessionTest, aSessionMayEndBeforeItsWork)
{
    fillRoll();
    auto brief = std::make_unique<Session>();
    QCoro::Task<> scanning = brief->scan(roll.path());
    brief.reset();
    EXPECT_NO_THROW(await(std::move(scanning)));
}

TEST_F(SessionTest, theScanThatEndsLastSetsTheState)
{
    fillRoll();
    const TempDir empty;
    QCoro::Task<> longer = session.scan(roll.path());
    QCoro::Task<> shorter = session.scan(empty.path());
    await(std::move(shorter));
    await(std::move(longer));
    EXPECT_EQ(in<Session::Ready>(session).plan.folder, roll.path());
}

} // namespace
} // namespace quillmark::test
