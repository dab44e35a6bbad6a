// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/SessionBridge.h"
#include "app/ManualEntryForm.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using Session = IngestViewModel;
using Screen = SessionBridge::Screen;

IngestPlan plan(const std::filesystem::path &folder = "/rolls/Roll-3")
{
    return {
        .folder = folder,
        .detection = {.file = folder / "Slate 01.jpg", .payload = test::fullPayload(), .raw = {}},
        .rollFiles = {folder / "a.jpg", folder / "b.jpg"},
        .backupMode = BackupMode::writeCopies};
}

TEST(SessionBridge, startsIdleWithBackupsAndWithoutSubfolders)
{
    const SessionBridge bridge;
    EXPECT_EQ(bridge.screen(), Screen::Idle);
    EXPECT_EQ(bridge.backupMode(), QStringLiteral("backup-originals"));
    EXPECT_FALSE(bridge.recursive());
}

TEST(SessionBridge, hasAScreenForEveryState)
{
    SessionBridge bridge;
    const std::vector<std::pair<Session::State, Screen>> states = {
        {Session::Scanning{}, Screen::Scanning},
        {Session::Ready{}, Screen::Ready},
        {Session::DetectionFailed{}, Screen::DetectionFailed},
        {Session::ManualEntry{}, Screen::ManualEntry},
        {Session::Writing{}, Screen::Writing},
        {Session::Done{}, Screen::Done},
        {Session::Error{}, Screen::Error},
        {Session::Idle{}, Screen::Idle},
    };
    for (const auto &[state, screen] : states) {
        const QSignalSpy changes(&bridge, &SessionBridge::stateChanged);
        bridge.viewModel().setState(state);
        EXPECT_EQ(bridge.screen(), screen);
        EXPECT_EQ(changes.count(), 1);
    }
}

TEST(SessionBridge, showsTheFolderInUpperCase)
{
    SessionBridge bridge;
    bridge.viewModel().setState(Session::Scanning{"/rolls/roll 12"});
    EXPECT_EQ(bridge.folderName(), QStringLiteral("ROLL 12"));
    bridge.viewModel().setState(Session::DetectionFailed{"/rolls/Grün/", 7});
    EXPECT_EQ(bridge.folderName(), QStringLiteral("GRÜN"));
    EXPECT_EQ(bridge.triedCount(), 7);
    bridge.viewModel().setState(Session::Writing{plan()});
    EXPECT_EQ(bridge.folderName(), QStringLiteral("ROLL-3"));
}

TEST(SessionBridge, showsAPlan)
{
    SessionBridge bridge;
    bridge.viewModel().setState(Session::Ready{plan()});
    EXPECT_EQ(bridge.slateName(), QStringLiteral("Slate 01.jpg"));
    EXPECT_EQ(bridge.imageCount(), 2);
    EXPECT_EQ(bridge.plannedMode(), QStringLiteral("write-copies"));
    const auto rows = test::fullPayload().inspectorRows();
    ASSERT_EQ(bridge.payloadRows()->rowCount(), static_cast<int>(rows.size()));
    EXPECT_EQ(bridge.payloadRows()->index(0).data(InspectorModel::LabelRole), rows[0].label);
}

TEST(SessionBridge, showsAnOutcome)
{
    SessionBridge bridge;
    bridge.viewModel().setState(
        Session::Done{{.plan = plan(), .mutated = {"/1", "/2", "/3"}, .backups = {"/4"}}});
    EXPECT_EQ(bridge.mutatedCount(), 3);
    EXPECT_EQ(bridge.backupCount(), 1);
    EXPECT_EQ(bridge.plannedMode(), QStringLiteral("write-copies"));
}

TEST(SessionBridge, showsAnErrorAsItIs)
{
    SessionBridge bridge;
    bridge.viewModel().setState(Session::Error{QStringLiteral("<b>no</b>\n%1")});
    EXPECT_EQ(bridge.errorText(), QStringLiteral("<b>no</b>\n%1"));
}

TEST(SessionBridge, holdsNothingOfAStateThatIsOver)
{
    SessionBridge bridge;
    bridge.viewModel().setState(Session::Ready{plan()});
    bridge.viewModel().setState(Session::Idle{});
    EXPECT_EQ(bridge.folderName(), QString());
    EXPECT_EQ(bridge.folder(), QUrl());
    EXPECT_EQ(bridge.slateName(), QString());
    EXPECT_EQ(bridge.imageCount(), 0);
    EXPECT_EQ(bridge.plannedMode(), QString());
}

TEST(SessionBridge, passesOnTheModeAndTheSwitch)
{
    SessionBridge bridge;
    const QSignalSpy modes(&bridge, &SessionBridge::backupModeChanged);
    const QSignalSpy switches(&bridge, &SessionBridge::recursiveChanged);
    bridge.setBackupMode(QStringLiteral("none"));
    bridge.setRecursive(true);
    EXPECT_EQ(bridge.viewModel().backupMode(), BackupMode::none);
    EXPECT_TRUE(bridge.viewModel().recursive());
    EXPECT_EQ(modes.count(), 1);
    EXPECT_EQ(switches.count(), 1);
    bridge.setBackupMode(QStringLiteral("nonsense"));
    EXPECT_EQ(bridge.viewModel().backupMode(), BackupMode::none);
}

TEST(SessionBridge, keepsTheModeAndTheSwitchThroughAReset)
{
    SessionBridge bridge;
    bridge.setBackupMode(QStringLiteral("none"));
    bridge.setRecursive(true);
    bridge.viewModel().setState(Session::Ready{plan()});
    bridge.reset();
    EXPECT_EQ(bridge.screen(), Screen::Idle);
    EXPECT_EQ(bridge.backupMode(), QStringLiteral("none"));
    EXPECT_TRUE(bridge.recursive());
}

TEST(SessionBridge, scansAFolderWhoseNameIsNotUtf8)
{
    const QUrl url = QUrl::fromEncoded("file:///nowhere/caf%E9");
    SessionBridge bridge;
    std::vector<std::filesystem::path> scanned;
    QObject::connect(&bridge, &SessionBridge::stateChanged, &bridge, [&] {
        if (const auto *now = std::get_if<Session::Scanning>(&bridge.viewModel().state())) {
            scanned.push_back(now->folder);
            EXPECT_EQ(bridge.folder(), url);
        }
    });
    bridge.openFolder(url);
    EXPECT_TRUE(QTest::qWaitFor([&] { return bridge.screen() == Screen::Error; }));
    EXPECT_THAT(scanned, ::testing::ElementsAre("/nowhere/caf\xe9"));
}

TEST(SessionBridge, ignoresWhatIsNotAFile)
{
    SessionBridge bridge;
    bridge.openFolder(QUrl(QStringLiteral("https://example.org/roll")));
    EXPECT_EQ(bridge.screen(), Screen::Idle);
    bridge.viewModel().setState(Session::DetectionFailed{"/rolls/1", 1});
    bridge.retryWithSlate(QUrl(QStringLiteral("https://example.org/a.jpg")));
    EXPECT_EQ(bridge.screen(), Screen::DetectionFailed);
}

TEST(SessionBridge, keepsAPickedFrameThatHoldsNoSlate)
{
    const test::TempDir dir;
    const auto frame = dir.write("frame.jpg", "no picture");
    SessionBridge bridge;
    bridge.viewModel().setState(Session::DetectionFailed{dir.path(), 1});
    bridge.retryWithSlate(QUrl::fromLocalFile(QString::fromStdString(frame)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bridge.screen() == Screen::ManualEntry; }));
    EXPECT_EQ(bridge.slateImage(), QUrl::fromLocalFile(QString::fromStdString(frame)));
}

TEST(SessionBridge, goesOnToManualEntryWithoutAFrame)
{
    SessionBridge bridge;
    bridge.viewModel().setState(Session::DetectionFailed{"/rolls/1", 1});
    bridge.enterManually();
    EXPECT_EQ(bridge.screen(), Screen::ManualEntry);
    EXPECT_EQ(bridge.slateImage(), QUrl());
}

TEST(SessionBridge, doesNotSubmitAFormThatIsNotValid)
{
    SessionBridge bridge;
    bridge.viewModel().setState(Session::ManualEntry{"/rolls/1", std::nullopt});
    const ManualEntryForm form;
    bridge.submitManual(&form);
    EXPECT_EQ(bridge.screen(), Screen::ManualEntry);
}

TEST(SessionBridge, submitsAValidForm)
{
    const test::TempDir dir; // without images: the run has nothing to write
    SessionBridge bridge;
    bridge.viewModel().setState(Session::ManualEntry{dir.path(), std::nullopt});
    ManualEntryForm form;
    form.prefill(test::minimalPayload());
    bridge.submitManual(&form);
    ASSERT_TRUE(QTest::qWaitFor([&] { return bridge.screen() == Screen::Done; }));
    const auto &done = std::get<Session::Done>(bridge.viewModel().state());
    EXPECT_EQ(done.outcome.plan.detection.payload.filmStock, test::minimalPayload().filmStock);
    EXPECT_EQ(done.outcome.plan.detection.payload.appVersion, ownGeneratorVersion);
}

} // namespace
} // namespace quillmark
