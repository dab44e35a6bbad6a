// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleWindow.h"
#include "support/Printers.h"

#include <QQuickItem>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmark {
namespace {

using Session = IngestViewModel;

const QString aboutItem = QStringLiteral("About Quillmark");
const QString updatesItem = QStringLiteral("Check for Updates…");
const QString quitItem = QStringLiteral("Quit Quillmark");

class Menu : public test::AccessibleWindow
{
protected:
    QAccessibleInterface *title() const
    {
        return one(QStringLiteral("Quillmark"), QAccessible::MenuItem);
    }
    QAccessibleInterface *item(const QString &name) const
    {
        return one(name, QAccessible::MenuItem);
    }
    bool isOpen() const
    {
        return !all(QStringLiteral("Quillmark"), QAccessible::PopupMenu).isEmpty();
    }
    bool aboutIsShown() const { return !all(aboutItem, QAccessible::Dialog).isEmpty(); }

    QSignalSpy m_exits{&m_engine, &QQmlEngine::exit};
};

TEST_F(Menu, isMadeWhenItIsFirstOpened)
{
    EXPECT_FALSE(isOpen());
    const auto before = m_window->findChildren<QQuickItem *>().size();
    key(Qt::Key_F10);
    EXPECT_TRUE(isOpen());
    EXPECT_GT(m_window->findChildren<QQuickItem *>().size(), before);
}

TEST_F(Menu, holdsItsItemsInOrder)
{
    key(Qt::Key_F10);
    auto *menu = one(QStringLiteral("Quillmark"), QAccessible::PopupMenu);
    ASSERT_EQ(menu->childCount(), 3);
    int index = 0;
    for (const QString &name : {aboutItem, updatesItem, quitItem}) {
        EXPECT_EQ(menu->child(index)->text(QAccessible::Name), name);
        EXPECT_EQ(menu->child(index)->role(), QAccessible::MenuItem);
        EXPECT_EQ(menu->child(index)->parent(), menu);
        ++index;
    }
    EXPECT_EQ(title()->parent()->role(), QAccessible::MenuBar);
    EXPECT_EQ(item(quitItem)->text(QAccessible::Accelerator), QStringLiteral("Ctrl+Q"));
}

TEST_F(Menu, opensAndClosesWithItsKeys)
{
    key(Qt::Key_F10);
    EXPECT_TRUE(isOpen());
    key(Qt::Key_F10);
    EXPECT_FALSE(isOpen());
    key(Qt::Key_Q, Qt::AltModifier);
    EXPECT_TRUE(isOpen());
    key(Qt::Key_Escape);
    EXPECT_FALSE(isOpen());
}

TEST_F(Menu, opensFromItsTitle)
{
    for (const Qt::Key opening : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        title()->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        EXPECT_TRUE(title()->state().collapsed);
        key(opening);
        EXPECT_TRUE(isOpen()) << opening;
        EXPECT_TRUE(title()->state().expanded);
        EXPECT_EQ(focusedName(), aboutItem);
        key(Qt::Key_Escape);
        EXPECT_TRUE(title()->state().focused) << opening;
    }
}

TEST_F(Menu, givesTheKeyboardBack)
{
    auto *recurse = one(QStringLiteral("RECURSE INTO SUBFOLDERS"), QAccessible::CheckBox);
    recurse->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    key(Qt::Key_F10);
    EXPECT_FALSE(recurse->state().focused);
    key(Qt::Key_Escape);
    EXPECT_TRUE(recurse->state().focused);
}

TEST_F(Menu, isWalkedThroughWhole)
{
    key(Qt::Key_F10);
    for (const QString &name : {updatesItem, quitItem, aboutItem}) {
        key(Qt::Key_Down);
        EXPECT_EQ(focusedName(), name);
    }
    for (const QString &name : {quitItem, updatesItem, aboutItem}) {
        key(Qt::Key_Up);
        EXPECT_EQ(focusedName(), name);
    }
    key(Qt::Key_Tab);
    EXPECT_EQ(focusedName(), updatesItem);
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(focusedName(), aboutItem);
    key(Qt::Key_End);
    EXPECT_EQ(focusedName(), quitItem);
    key(Qt::Key_Home);
    EXPECT_EQ(focusedName(), aboutItem);
    EXPECT_TRUE(isOpen());
}

TEST_F(Menu, doesNotChooseWhatIsNotAvailable)
{
    key(Qt::Key_F10);
    key(Qt::Key_Down);
    EXPECT_TRUE(focused()->state().disabled);
    key(Qt::Key_Return);
    press(item(updatesItem));
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(focusedName(), updatesItem);
}

TEST_F(Menu, quits)
{
    press(title());
    press(item(quitItem));
    EXPECT_EQ(m_exits.count(), 1);
}

TEST_F(Menu, quitsWithItsKeysAsClosingDoes)
{
    setState(Session::Writing{});
    key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_FALSE(m_window->isVisible());
    EXPECT_EQ(m_exits.count(), 0);
    setState(Session::Done{});
    EXPECT_EQ(m_exits.count(), 1);
}

TEST_F(Menu, closesWithAPressElsewhere)
{
    key(Qt::Key_F10);
    const auto *copies = one(QStringLiteral("WRITE COPIES"), QAccessible::RadioButton);
    QTest::mouseClick(m_window.get(), Qt::LeftButton, {},
                      m_window->mapFromGlobal(copies->rect().center()));
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(copies->state().checked) << "the press only closes the menu";
    EXPECT_EQ(focusedName(), QStringLiteral("CHOOSE FOLDER"));
}

TEST_F(Menu, worksWithThePointer)
{
    const auto click = [this](QAccessibleInterface *target) {
        const QPoint place = m_window->mapFromGlobal(target->rect().center());
        QTest::mouseMove(m_window.get(), place);
        QTest::mouseClick(m_window.get(), Qt::LeftButton, {}, place);
    };
    click(title());
    ASSERT_TRUE(isOpen());
    click(item(updatesItem));
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(focusedName(), updatesItem) << "the pointer highlights";
    click(item(aboutItem));
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(aboutIsShown());
}

TEST_F(Menu, closesWhenAnotherScreenComes)
{
    key(Qt::Key_F10);
    setState(Session::Done{});
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(focusedName(), QStringLiteral("INGEST ANOTHER  →"));
}

TEST_F(Menu, takesThePlaceOfTheCalendar)
{
    setState(Session::ManualEntry{"/rolls/roll 12", std::nullopt});
    press(one(QStringLiteral("DATE"), QAccessible::CheckBox));
    press(one(QStringLiteral("Choose a date"), QAccessible::Button));
    ASSERT_EQ(focused()->role(), QAccessible::Cell);
    press(title());
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(focusedName(), aboutItem);
    EXPECT_TRUE(QTest::qWaitFor([this] {
        const auto all = everything();
        return std::none_of(all.begin(), all.end(), [](QAccessibleInterface *each) {
            return each->role() == QAccessible::Cell;
        });
    }));
    key(Qt::Key_Escape);
    EXPECT_EQ(focusedName(), QStringLiteral("DATE"));
    EXPECT_EQ(focused()->role(), QAccessible::EditableText);
}

TEST_F(Menu, aboutSaysWhatTheProgramIs)
{
    key(Qt::Key_F10);
    key(Qt::Key_Return);
    ASSERT_TRUE(aboutIsShown());
    EXPECT_FALSE(isOpen());
    auto *dialog = one(aboutItem, QAccessible::Dialog);
    QStringList texts;
    for (auto *each : below(dialog)) {
        texts << each->text(QAccessible::Name);
    }
    ASSERT_EQ(texts.size(), 5);
    EXPECT_EQ(texts.at(0), QStringLiteral("Quillmark"));
    EXPECT_TRUE(texts.at(1).startsWith(QStringLiteral("Version ")));
    EXPECT_TRUE(texts.at(3).contains(QStringLiteral("Quillmark authors")));
    EXPECT_TRUE(texts.at(3).contains(QStringLiteral("MIT")));
    EXPECT_EQ(texts.at(4), QStringLiteral("CLOSE"));
    EXPECT_TRUE(focused()->text(QAccessible::Description).contains(texts.at(2)));
}

TEST_F(Menu, aboutKeepsTheKeyboard)
{
    key(Qt::Key_F10);
    key(Qt::Key_Return);
    for (int i = 0; i < 3; ++i) {
        key(Qt::Key_Tab);
        EXPECT_EQ(focusedName(), QStringLiteral("CLOSE"));
        key(Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(focusedName(), QStringLiteral("CLOSE"));
    }
    key(Qt::Key_F10);
    EXPECT_FALSE(isOpen());
    press(title());
    EXPECT_FALSE(isOpen());
    press(one(QStringLiteral("IN PLACE"), QAccessible::RadioButton));
    EXPECT_EQ(m_session->backupMode(), QStringLiteral("backup-originals"));
    EXPECT_TRUE(aboutIsShown());
}

TEST_F(Menu, aboutGivesTheKeyboardBack)
{
    auto *recurse = one(QStringLiteral("RECURSE INTO SUBFOLDERS"), QAccessible::CheckBox);
    for (const Qt::Key closing : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space}) {
        recurse->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        key(Qt::Key_F10);
        key(Qt::Key_Return);
        key(closing);
        EXPECT_FALSE(aboutIsShown()) << closing;
        EXPECT_TRUE(recurse->state().focused) << closing;
    }
}

TEST_F(Menu, aboutLeavesTheKeyboardToAScreenThatCameMeanwhile)
{
    key(Qt::Key_F10);
    key(Qt::Key_Return);
    setState(Session::Error{QStringLiteral("It broke.")});
    EXPECT_EQ(focusedName(), QStringLiteral("CLOSE"));
    key(Qt::Key_Escape);
    EXPECT_EQ(focusedName(), QStringLiteral("TRY AGAIN"));
}

} // namespace
} // namespace quillmark
