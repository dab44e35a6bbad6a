// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Control.h"
#include "app/MainWindow.h"
#include "app/Theme.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <QMimeData>
#include <QQuickItem>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace quillmark {
namespace {

using Session = IngestViewModel;

class Window : public test::MainWindow
{
protected:
    Window()
    {
        QObject::connect(m_session, &SessionBridge::stateChanged, m_session, [this] {
            const auto &state = m_session->viewModel().state();
            if (const auto *scanning = std::get_if<Session::Scanning>(&state)) {
                m_scanned.push_back(scanning->folder);
            }
        });
    }

    /// Whether a drag of these locations to the middle of the window is taken.
    bool drag(const QList<QUrl> &urls)
    {
        m_dragged.setUrls(urls);
        QDragEnterEvent enter(middle(), Qt::CopyAction | Qt::MoveAction, &m_dragged, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &enter);
        QDragMoveEvent move(middle(), Qt::CopyAction | Qt::MoveAction, &m_dragged, Qt::LeftButton,
                            Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &move);
        return move.isAccepted();
    }
    Qt::DropAction drop()
    {
        QDropEvent event(middle(), Qt::CopyAction | Qt::MoveAction, &m_dragged, Qt::LeftButton,
                         Qt::NoModifier);
        event.setDropAction(Qt::MoveAction);
        QCoreApplication::sendEvent(m_window.get(), &event);
        return event.isAccepted() ? event.dropAction() : Qt::IgnoreAction;
    }
    /// What has been scanned, once the scans are over.
    std::vector<std::filesystem::path> scannedFolders()
    {
        EXPECT_TRUE(QTest::qWaitFor(
            [this] { return m_session->screen() != SessionBridge::Screen::Scanning; }));
        return m_scanned;
    }
    QPoint middle() const { return {m_window->width() / 2, m_window->height() / 3}; }

    QSignalSpy m_exits{&m_engine, &QQmlEngine::exit};
    std::vector<std::filesystem::path> m_scanned;
    QMimeData m_dragged;
};

TEST_F(Window, isDarkAndNoSmallerThanItsContent)
{
    EXPECT_EQ(m_window->title(), QStringLiteral("Quillmark"));
    const auto *bar = m_window->findChild<QQuickItem *>(QStringLiteral("menuBar"));
    ASSERT_TRUE(bar);
    const int barHeight = qRound(bar->height());
    EXPECT_EQ(bar->height(), barHeight);
    EXPECT_GT(barHeight, 16);
    EXPECT_LT(barHeight, 40);
    EXPECT_EQ(m_window->minimumSize(), QSize(720, 560 + barHeight));
    EXPECT_EQ(m_window->size(), QSize(1000, 700 + barHeight));
    EXPECT_EQ(m_window->color(), QColor(14, 14, 14));
    EXPECT_GE(m_window->maximumWidth(), 16384);
    EXPECT_TRUE(shows(QStringLiteral("DROP A FOLDER\nOF SCANS")));
}

TEST_F(Window, showsTheScreenOfEachState)
{
    const IngestPlan plan{
        .folder = "/rolls/roll 12",
        .detection = {.file = "/rolls/roll 12/1.jpg", .payload = test::minimalPayload(), .raw = {}},
        .rollFiles = {"/rolls/roll 12/1.jpg"},
        .backupMode = BackupMode::none};
    setState(Session::Scanning{"/rolls/roll 12"});
    EXPECT_TRUE(shows(QStringLiteral("SCANNING")));
    EXPECT_TRUE(shows(QStringLiteral("ROLL 12")));
    EXPECT_TRUE(shows(QStringLiteral("Locating slate frame…")));
    setState(Session::Ready{plan});
    EXPECT_TRUE(shows(QStringLiteral("02 / SLATE DETECTED")));
    EXPECT_FALSE(shows(QStringLiteral("SCANNING")));
    setState(Session::Writing{plan});
    EXPECT_TRUE(shows(QStringLiteral("EMBEDDING")));
    EXPECT_TRUE(shows(QStringLiteral("ROLL 12")));
    EXPECT_TRUE(shows(QStringLiteral("exiftool · 1 image(s)")));
    setState(Session::Done{{.plan = plan, .mutated = {"/1"}, .backups = {}}});
    EXPECT_TRUE(shows(QStringLiteral("03 / DONE")));
    setState(Session::DetectionFailed{"/rolls/roll 12", 2});
    EXPECT_TRUE(shows(QStringLiteral("NO READABLE SLATE\nIN ROLL 12")));
    setState(Session::ManualEntry{"/rolls/roll 12", std::nullopt});
    EXPECT_TRUE(shows(QStringLiteral("02 / MANUAL ENTRY")));
    setState(Session::Error{QStringLiteral("It broke.")});
    EXPECT_TRUE(shows(QStringLiteral("It broke.")));
    setState(Session::Idle{});
    EXPECT_TRUE(shows(QStringLiteral("01 / INGEST A ROLL")));
}

TEST_F(Window, takesTheFirstOfDroppedFolders)
{
    ASSERT_TRUE(drag(
        {QUrl(QStringLiteral("file:///nowhere/1")), QUrl(QStringLiteral("file:///nowhere/2"))}));
    EXPECT_EQ(drop(), Qt::CopyAction);
    EXPECT_THAT(scannedFolders(), ::testing::ElementsAre("/nowhere/1"));
}

TEST_F(Window, showsThatADragMayBeDropped)
{
    const auto border = [this] {
        for (const QQuickItem *item : shownItems()) {
            if (item->property("hovered").isValid()) {
                const auto *fill = item->childItems().first();
                auto *pen = fill->property("border").value<QObject *>();
                return std::tuple(fill->property("color").value<QColor>(),
                                  pen->property("color").value<QColor>(),
                                  pen->property("width").toInt());
            }
        }
        throw std::runtime_error("no drop zone");
    };
    const ThemeColor color;
    const auto calm = std::tuple(color.surfaceContainerLow, color.outlineVariant, 1);
    EXPECT_EQ(border(), calm);
    drag({QUrl(QStringLiteral("file:///nowhere/1"))});
    EXPECT_EQ(border(), std::tuple(color.surfaceContainer, color.primary, 2));
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(m_window.get(), &leave);
    EXPECT_EQ(border(), calm);
    drag({QUrl(QStringLiteral("https://example.org/roll"))});
    EXPECT_EQ(border(), calm);
}

TEST_F(Window, keepsTheBytesOfADroppedName)
{
    ASSERT_TRUE(drag({QUrl::fromEncoded("file:///nowhere/caf%E9")}));
    drop();
    EXPECT_THAT(scannedFolders(), ::testing::ElementsAre("/nowhere/caf\xe9"));
}

TEST_F(Window, refusesWhatIsNotAFileLocation)
{
    EXPECT_FALSE(drag({QUrl(QStringLiteral("https://example.org/roll"))}));
    EXPECT_FALSE(drag({}));
    EXPECT_FALSE(drag({QUrl(QStringLiteral("https://example.org/roll")),
                       QUrl(QStringLiteral("file:///nowhere/2"))}));
    EXPECT_EQ(m_session->screen(), SessionBridge::Screen::Idle);
}

TEST_F(Window, endsTheProgramWhenClosed)
{
    m_window->close();
    EXPECT_EQ(m_exits.count(), 1);
}

TEST_F(Window, endsTheProgramWhenClosedDuringAScan)
{
    setState(Session::Scanning{"/rolls/roll 12"});
    m_window->close();
    EXPECT_EQ(m_exits.count(), 1);
}

TEST_F(Window, onlyHidesWhileARunWrites)
{
    setState(Session::Writing{});
    m_window->close();
    EXPECT_FALSE(m_window->isVisible());
    EXPECT_EQ(m_exits.count(), 0);
    setState(Session::Done{});
    EXPECT_EQ(m_exits.count(), 1);
}

TEST_F(Window, controlsOfTheIdleScreenRestBehindTheOthers)
{
    const auto items = shownItems();
    const auto inPlace = std::find_if(items.begin(), items.end(), [](const QQuickItem *item) {
        return qobject_cast<const Control *>(item) != nullptr &&
               item->property("text").toString() == QStringLiteral("IN PLACE");
    });
    ASSERT_NE(inPlace, items.end());
    (*inPlace)->forceActiveFocus();
    setState(Session::DetectionFailed{"/rolls/1", 1}); // whose main action starts no work
    QTest::keyClick(m_window.get(), Qt::Key_Space);
    EXPECT_EQ(m_session->viewModel().backupMode(), BackupMode::backupOriginals);

    setState(Session::Idle{});
    (*inPlace)->forceActiveFocus();
    QTest::keyClick(m_window.get(), Qt::Key_Space);
    EXPECT_EQ(m_session->viewModel().backupMode(), BackupMode::none);
}

TEST_F(Window, doesNotEndWhileASubmittedFormIsOnItsWay)
{
    const test::TempDir empty;
    setState(Session::ManualEntry{empty.path(), {}});
    ManualEntryDraft draft;
    draft.prefill(test::minimalPayload());
    m_session->submitManual(&draft);
    m_window->close();
    EXPECT_FALSE(m_window->isVisible());
    EXPECT_EQ(m_exits.count(), 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_exits.count() == 1; }));
    EXPECT_TRUE(std::holds_alternative<Session::Done>(m_session->viewModel().state()));
}

TEST_F(Window, comesBackWithTheErrorOfAHiddenRun)
{
    setState(Session::Writing{});
    m_window->close();
    setState(Session::Error{QStringLiteral("Disk full.")});
    EXPECT_TRUE(m_window->isVisible());
    EXPECT_EQ(m_exits.count(), 0);
    EXPECT_TRUE(shows(QStringLiteral("Disk full.")));
    m_window->close();
    EXPECT_EQ(m_exits.count(), 1);
}

/// The window at its smallest, showing what is as long as file systems and slates allow.
class SmallWindow : public Window
{
protected:
    SmallWindow()
    {
        m_window->resize(m_window->minimumSize());
        const QString word = QString(200, QLatin1Char('W'));
        SlatePayload payload = test::fullPayload();
        payload.notes = QString(word + QLatin1Char(' ')).repeated(20);
        payload.cameraModel = word;
        plan = {
            .folder = folder,
            .detection = {.file = folder / std::string(200, 'x'), .payload = payload, .raw = {}},
            .rollFiles = std::vector<std::filesystem::path>(123456),
            .backupMode = BackupMode::backupOriginals};
    }

    std::filesystem::path folder = "/rolls/" + std::string(200, 'W');
    IngestPlan plan;
};

TEST_F(SmallWindow, holdsTheDropZone)
{
    expectAllInside();
}

TEST_F(SmallWindow, holdsTheStatus)
{
    setState(Session::Scanning{folder});
    expectAllInside();
    setState(Session::Writing{plan});
    expectAllInside();
}

TEST_F(SmallWindow, holdsThePlan)
{
    setState(Session::Ready{plan});
    expectAllInside();
}

TEST_F(SmallWindow, holdsAFailedDetection)
{
    setState(Session::DetectionFailed{folder, 123456789});
    expectAllInside();
}

TEST_F(SmallWindow, holdsTheForm)
{
    setState(Session::ManualEntry{folder, folder / std::string(200, 'x')});
    expectAllInside();
}

TEST_F(SmallWindow, holdsTheResult)
{
    setState(Session::Done{{.plan = plan, .mutated = plan.rollFiles, .backups = plan.rollFiles}});
    expectAllInside();
}

TEST_F(SmallWindow, holdsALongError)
{
    setState(
        Session::Error{QString(2000, QLatin1Char('e')) + QStringLiteral("line\n").repeated(500)});
    expectAllInside();
}

} // namespace
} // namespace quillmark
