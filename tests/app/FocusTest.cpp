// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleWindow.h"
#include "manual/LastUsedPayloadStore.h"
#include "support/Printers.h"
#include "support/Samples.h"

#include <QApplication>
#include <QFileDialog>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmark {
namespace {

using Session = IngestViewModel;
using Screen = SessionBridge::Screen;

class Focus : public test::AccessibleWindow
{
protected:
    static IngestPlan plan()
    {
        return {.folder = "/rolls/roll 12",
                .detection = {.file = "/rolls/roll 12/1.jpg",
                              .payload = test::minimalPayload(),
                              .raw = {}},
                .rollFiles = {"/rolls/roll 12/1.jpg"},
                .backupMode = BackupMode::none};
    }
    void showForm() { setState(Session::ManualEntry{"/rolls/roll 12", std::nullopt}); }
    void expectStart(const QString &name, const QStringList &said) const
    {
        EXPECT_EQ(focusedName(), name);
        for (const QString &text : said) {
            EXPECT_TRUE(focused()->text(QAccessible::Description).contains(text))
                << name.toStdString() << " does not say " << text.toStdString();
        }
    }
    static QList<QFileDialog *> choosers()
    {
        QList<QFileDialog *> found;
        for (QWidget *each : QApplication::topLevelWidgets()) {
            if (auto *dialog = qobject_cast<QFileDialog *>(each); dialog && dialog->isVisible()) {
                found << dialog;
            }
        }
        return found;
    }
    static void closeChoosers()
    {
        for (QFileDialog *each : choosers()) {
            each->reject();
        }
    }
};

TEST_F(Focus, startsOnTheMainActionOfEachScreen)
{
    expectStart(QStringLiteral("CHOOSE FOLDER"),
                {QStringLiteral("01 / INGEST A ROLL"), QStringLiteral("DROP A FOLDER")});
    setState(Session::Ready{plan()});
    expectStart(QStringLiteral("EMBED METADATA  →"),
                {QStringLiteral("02 / SLATE DETECTED"), QStringLiteral("ROLL 12")});
    setState(Session::DetectionFailed{"/rolls/roll 12", 2});
    expectStart(
        QStringLiteral("ENTER MANUALLY  →"),
        {QStringLiteral("02 / SLATE NOT FOUND"), QStringLiteral("NO READABLE SLATE\nIN ROLL 12")});
    setState(Session::Done{{.plan = plan(), .mutated = {"/1"}, .backups = {}}});
    expectStart(QStringLiteral("INGEST ANOTHER  →"),
                {QStringLiteral("03 / DONE"), QStringLiteral("METADATA EMBEDDED")});
    setState(Session::Error{QStringLiteral("It broke.")});
    expectStart(QStringLiteral("TRY AGAIN"),
                {QStringLiteral("INGESTION FAILED"), QStringLiteral("It broke.")});
    setState(Session::Idle{});
    expectStart(QStringLiteral("CHOOSE FOLDER"), {});
}

TEST_F(Focus, saysWhatGoesOnWhereNothingCanBeDone)
{
    setState(Session::Scanning{"/rolls/roll 12"});
    expectStart(QStringLiteral("SCANNING ROLL 12"), {QStringLiteral("Locating slate frame…")});
    EXPECT_EQ(focused()->role(), QAccessible::ProgressBar);
    setState(Session::Writing{plan()});
    expectStart(QStringLiteral("EMBEDDING ROLL 12"), {QStringLiteral("exiftool · 1 image(s)")});
    key(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), QStringLiteral("Quillmark"));
    key(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), QStringLiteral("Quillmark")) << "the menu is the only stop";
}

TEST_F(Focus, startsWhereTheFormNeedsSomething)
{
    showForm();
    expectStart(QStringLiteral("MAKE *"),
                {QStringLiteral("02 / MANUAL ENTRY"), QStringLiteral("ROLL 12")});
    EXPECT_EQ(focused()->role(), QAccessible::EditableText);
}

TEST_F(Focus, startsOnTheButtonOfAFormThatIsComplete)
{
    LastUsedPayloadStore::save(test::minimalPayload());
    showForm();
    expectStart(QStringLiteral("EMBED METADATA  →"),
                {QStringLiteral("02 / MANUAL ENTRY"), QStringLiteral("ROLL 12")});
}

TEST_F(Focus, startsAnewOnTheIdleScreen)
{
    one(QStringLiteral("RECURSE INTO SUBFOLDERS"), QAccessible::CheckBox)
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::setFocusAction());
    setState(Session::Scanning{"/rolls/roll 12"});
    setState(Session::Idle{});
    EXPECT_EQ(focusedName(), QStringLiteral("CHOOSE FOLDER"));
}

TEST_F(Focus, isNotLostWhenItsControlIsDisabled)
{
    LastUsedPayloadStore::save(test::minimalPayload());
    showForm();
    ASSERT_EQ(focusedName(), QStringLiteral("EMBED METADATA  →"));
    one(QStringLiteral("ISO *"), QAccessible::EditableText)
        ->editableTextInterface()
        ->replaceText(0, 3, QStringLiteral("x"));
    EXPECT_TRUE(QTest::qWaitFor([this] {
        const auto all = everything();
        return std::any_of(all.begin(), all.end(),
                           [](QAccessibleInterface *each) { return each->state().focused; });
    }));
    EXPECT_EQ(focusedName(), QStringLiteral("CANCEL"));
}

TEST_F(Focus, isNotLostWithTheCalendarOfAFieldThatIsDisabled)
{
    showForm();
    const auto toggle = one(QStringLiteral("DATE"), QAccessible::CheckBox);
    press(toggle);
    press(one(QStringLiteral("Choose a date"), QAccessible::Button));
    ASSERT_EQ(focused()->role(), QAccessible::Cell);
    press(toggle);
    EXPECT_TRUE(QTest::qWaitFor([this] {
        const auto all = everything();
        return std::any_of(all.begin(), all.end(),
                           [](QAccessibleInterface *each) { return each->state().focused; });
    }));
    EXPECT_FALSE(focused()->state().disabled);
    key(Qt::Key_Tab);
    EXPECT_FALSE(focused()->state().disabled);
    key(Qt::Key_Escape);
    EXPECT_EQ(m_session->screen(), Screen::Idle) << "the keyboard is on the form";
}

TEST_F(Focus, theCalendarStaysBelowTheMenuBar)
{
    const QRect bar = one(QStringLiteral("Quillmark"), QAccessible::MenuItem)->parent()->rect();
    m_window->resize(720, 560 + bar.height());
    showForm();
    press(one(QStringLiteral("DATE"), QAccessible::CheckBox));
    auto *form = m_window->findChild<QObject *>(QStringLiteral("flickable"));
    for (int y = 0; y < form->property("contentHeight").toInt() - 300; y += 8) {
        form->setProperty("contentY", y);
        press(one(QStringLiteral("Choose a date"), QAccessible::Button));
        const QRect heading = one(QStringLiteral("Previous year"), QAccessible::Button)->rect();
        EXPECT_GT(heading.top() - 12, bar.bottom()) << y;
        EXPECT_LT(focused()->parent()->rect().bottom() + 12, bar.top() + m_window->height()) << y;
        key(Qt::Key_Escape);
    }
}

TEST_F(Focus, leavesTheMenuWithTheWindow)
{
    key(Qt::Key_F10);
    QQuickWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_TRUE(all(QStringLiteral("Quillmark"), QAccessible::PopupMenu).isEmpty());
    m_window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    EXPECT_EQ(focusedName(), QStringLiteral("CHOOSE FOLDER"));
}

TEST_F(Focus, escapeIsCancelWhereThereIsOne)
{
    setState(Session::Ready{plan()});
    key(Qt::Key_Escape);
    EXPECT_EQ(m_session->screen(), Screen::Idle);
    setState(Session::DetectionFailed{"/rolls/roll 12", 2});
    key(Qt::Key_Escape);
    EXPECT_EQ(m_session->screen(), Screen::Idle);
    showForm();
    key(Qt::Key_Escape);
    EXPECT_EQ(m_session->screen(), Screen::Idle);
}

TEST_F(Focus, escapeDoesNothingElsewhere)
{
    for (const Session::State &state :
         {Session::State(Session::Scanning{"/rolls/1"}), Session::State(Session::Writing{plan()}),
          Session::State(Session::Done{}), Session::State(Session::Error{QStringLiteral("x")})}) {
        setState(state);
        key(Qt::Key_Escape);
        EXPECT_EQ(m_session->viewModel().state().index(), state.index());
    }
}

TEST_F(Focus, escapeClosesTheMenuFirst)
{
    setState(Session::Ready{plan()});
    key(Qt::Key_F10);
    key(Qt::Key_Escape);
    EXPECT_EQ(m_session->screen(), Screen::Ready);
    key(Qt::Key_F10);
    key(Qt::Key_Return);
    key(Qt::Key_Escape);
    EXPECT_EQ(m_session->screen(), Screen::Ready);
    key(Qt::Key_Escape);
    EXPECT_EQ(m_session->screen(), Screen::Idle);
}

TEST_F(Focus, theChooserOpensWithItsKeysOnTheIdleScreenOnly)
{
    key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(choosers().size(), 1);
    closeChoosers();
    setState(Session::Ready{plan()});
    key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_TRUE(choosers().isEmpty());
    setState(Session::Idle{});
    key(Qt::Key_F10);
    key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_TRUE(choosers().isEmpty()) << "the menu is open";
    key(Qt::Key_Return);
    key(Qt::Key_O, Qt::ControlModifier);
    EXPECT_TRUE(choosers().isEmpty()) << "the dialog is open";
    closeChoosers();
}

TEST_F(Focus, theMenuStaysShutWhileTheChooserIsOpen)
{
    auto *title = one(QStringLiteral("Quillmark"), QAccessible::MenuItem);
    press(one(QStringLiteral("CHOOSE FOLDER"), QAccessible::Button));
    ASSERT_EQ(choosers().size(), 1);
    EXPECT_TRUE(title->state().disabled);
    press(title);
    EXPECT_TRUE(all(QStringLiteral("Quillmark"), QAccessible::PopupMenu).isEmpty());
    closeChoosers();
    EXPECT_FALSE(title->state().disabled);
    press(title);
    EXPECT_FALSE(all(QStringLiteral("Quillmark"), QAccessible::PopupMenu).isEmpty());
}

TEST_F(Focus, theChooserIsLeftWithTheKeysThatQuit)
{
    const QSignalSpy exits(&m_engine, &QQmlEngine::exit);
    key(Qt::Key_O, Qt::ControlModifier);
    ASSERT_EQ(choosers().size(), 1);
    ASSERT_TRUE(QTest::qWaitForWindowActive(choosers().first()));
    QTest::keyClick(choosers().first(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(choosers().isEmpty());
    EXPECT_EQ(exits.count(), 1);
}

TEST_F(Focus, staysForTheWindowToComeBackTo)
{
    QQuickWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    setState(Session::Done{{.plan = plan(), .mutated = {"/1"}, .backups = {}}});
    m_window->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
    EXPECT_EQ(focusedName(), QStringLiteral("INGEST ANOTHER  →"));
}

} // namespace
} // namespace quillmark
