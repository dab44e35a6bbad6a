// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleWindow.h"
#include "app/TwoHalves.h"
#include "support/ImageFiles.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <map>

namespace quillmark {
namespace {

using Session = IngestViewModel;

class Accessibility : public test::AccessibleWindow
{
protected:
    void showForm() { setState(Session::ManualEntry{"/rolls/1", std::nullopt}); }
};

TEST_F(Accessibility, holdsEveryTextUnderWhatItShows)
{
    EXPECT_TRUE(one(QStringLiteral("DROP A FOLDER\nOF SCANS"), QAccessible::StaticText));
    EXPECT_TRUE(one(QStringLiteral("01 / INGEST A ROLL"), QAccessible::StaticText));
    EXPECT_TRUE(one(QStringLiteral("BACKUP MODE"), QAccessible::StaticText));
    setState(Session::Error{QStringLiteral("<i>It broke.</i>")});
    EXPECT_TRUE(one(QStringLiteral("<i>It broke.</i>"), QAccessible::StaticText));
    EXPECT_TRUE(all(QStringLiteral("BACKUP MODE"), QAccessible::StaticText).isEmpty());
}

TEST_F(Accessibility, leavesOutWhatIsNotShown)
{
    IngestOutcome outcome;
    outcome.mutated = {"/1"};
    setState(Session::Done{outcome});
    EXPECT_TRUE(one(QStringLiteral("MUTATED"), QAccessible::StaticText));
    EXPECT_TRUE(all(QStringLiteral("BACKED UP"), QAccessible::StaticText).isEmpty());
    showForm();
    EXPECT_TRUE(all(QStringLiteral("CHANGE"), QAccessible::Button).isEmpty());
    EXPECT_TRUE(all(QString(), QAccessible::StaticText).isEmpty());
}

TEST_F(Accessibility, knowsTheSlatePhotoAsAPictureWhileThereIsOne)
{
    const auto photos = [this] {
        return all(QStringLiteral("Slate reference photo"), QAccessible::Graphic).size();
    };
    const test::TempDir folder;
    test::writeJpeg(folder / "slate.jpg", test::twoHalves(60, 30));
    setState(Session::ManualEntry{folder.path(), folder / "slate.jpg"});
    EXPECT_TRUE(QTest::qWaitFor([&] { return photos() == 1; }));
    setState(Session::ManualEntry{folder.path(), folder.write("no.jpg", "no picture")});
    EXPECT_TRUE(QTest::qWaitFor([&] { return photos() == 0; }));
    EXPECT_TRUE(one(QStringLiteral("NO SLATE PHOTO ATTACHED"), QAccessible::StaticText));
}

TEST_F(Accessibility, pressesButtons)
{
    setState(Session::Error{QStringLiteral("It broke.")});
    press(one(QStringLiteral("TRY AGAIN"), QAccessible::Button));
    EXPECT_EQ(m_session->screen(), SessionBridge::Screen::Idle);
}

TEST_F(Accessibility, reportsDisabledButtons)
{
    showForm();
    auto *embed = one(QStringLiteral("EMBED METADATA  →"), QAccessible::Button);
    EXPECT_TRUE(embed->state().disabled);
    press(embed);
    EXPECT_EQ(m_session->screen(), SessionBridge::Screen::ManualEntry);
    EXPECT_FALSE(one(QStringLiteral("CANCEL"), QAccessible::Button)->state().disabled);
}

TEST_F(Accessibility, togglesTheSwitch)
{
    auto *recurse = one(QStringLiteral("RECURSE INTO SUBFOLDERS"), QAccessible::CheckBox);
    EXPECT_TRUE(recurse->state().checkable);
    EXPECT_FALSE(recurse->state().checked);
    recurse->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(recurse->state().checked);
    EXPECT_TRUE(m_session->recursive());
}

TEST_F(Accessibility, choosesAMode)
{
    auto *copies = one(QStringLiteral("WRITE COPIES"), QAccessible::RadioButton);
    press(copies);
    EXPECT_EQ(m_session->backupMode(), QStringLiteral("write-copies"));
    EXPECT_TRUE(copies->state().checked);
    EXPECT_FALSE(
        one(QStringLiteral("BACKUP ORIGINALS"), QAccessible::RadioButton)->state().checked);
    press(copies);
    EXPECT_TRUE(copies->state().checked);
}

TEST_F(Accessibility, typesIntoFields)
{
    showForm();
    const std::map<const char *, const char *> texts = {{"MAKE *", "Kestrel"},
                                                        {"MODEL *", "K2"},
                                                        {"BRAND *", "Vela"},
                                                        {"STOCK *", "Nova"},
                                                        {"ISO *", "400"}};
    for (const auto &[name, text] : texts) {
        auto *field = one(QLatin1String(name), QAccessible::EditableText);
        EXPECT_TRUE(field->state().editable);
        field->editableTextInterface()->replaceText(0, 0, QLatin1String(text));
        EXPECT_EQ(field->text(QAccessible::Value), QLatin1String(text));
    }
    EXPECT_FALSE(one(QStringLiteral("EMBED METADATA  →"), QAccessible::Button)->state().disabled);
}

TEST_F(Accessibility, editsTheTextOfAField)
{
    showForm();
    auto *field = one(QStringLiteral("NOTES"), QAccessible::EditableText);
    auto *edit = field->editableTextInterface();
    auto *read = field->textInterface();
    edit->insertText(0, QStringLiteral("fog at dawn"));
    edit->deleteText(3, 6);
    EXPECT_EQ(read->text(0, read->characterCount()), QStringLiteral("fog dawn"));
    edit->replaceText(4, 99, QStringLiteral("dusk"));
    EXPECT_EQ(read->text(4, 8), QStringLiteral("dusk"));
    EXPECT_EQ(read->cursorPosition(), 8);
    read->setSelection(0, 0, 3);
    int start = -1;
    int end = -1;
    read->selection(0, &start, &end);
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, 3);
    read->removeSelection(0);
    EXPECT_EQ(read->selectionCount(), 0);
    EXPECT_EQ(read->offsetAtPoint(read->characterRect(2).center()), 2);
}

TEST_F(Accessibility, readsAndSelectsTheWordsOfAFailure)
{
    const QString words = QStringLiteral("It broke.\n<b>Badly</b>, at the end.");
    setState(Session::Error{words});
    auto *message = one(words, QAccessible::StaticText);
    EXPECT_TRUE(message->state().readOnly);
    EXPECT_TRUE(message->state().selectableText);
    EXPECT_TRUE(message->state().focusable);
    EXPECT_FALSE(message->state().editable);
    EXPECT_EQ(message->editableTextInterface(), nullptr);
    auto *read = message->textInterface();
    ASSERT_TRUE(read);
    EXPECT_EQ(read->characterCount(), words.size());
    EXPECT_EQ(read->text(3, 8), QStringLiteral("broke"));
    for (const int offset : {0, 4, 10, 16, static_cast<int>(words.size()) - 1}) {
        EXPECT_EQ(read->offsetAtPoint(read->characterRect(offset).center()), offset);
    }
    EXPECT_EQ(read->offsetAtPoint({-10, -10}), -1);
    read->setSelection(0, 3, 8);
    int start = -1;
    int end = -1;
    read->selection(0, &start, &end);
    EXPECT_EQ(start, 3);
    EXPECT_EQ(end, 8);
}

TEST_F(Accessibility, leavesOutAnEmptyMessage)
{
    setState(Session::Error{QString()});
    EXPECT_TRUE(all(QString(), QAccessible::StaticText).isEmpty());
    EXPECT_TRUE(one(QStringLiteral("INGESTION FAILED"), QAccessible::StaticText));
}

TEST_F(Accessibility, keyboardComesToNoLabel)
{
    const auto *label = one(QStringLiteral("BACKUP MODE"), QAccessible::StaticText);
    EXPECT_FALSE(label->state().focusable);
    EXPECT_TRUE(label->state().readOnly);
    EXPECT_FALSE(label->state().offscreen);
}

TEST_F(Accessibility, scrolledAwayFieldsAreOffTheScreen)
{
    m_window->resize(m_window->minimumSize());
    showForm();
    QTest::qWait(0); // layouts settle with the event loop
    auto *first = one(QStringLiteral("MAKE *"), QAccessible::EditableText);
    auto *last = one(QStringLiteral("©"), QAccessible::EditableText);
    EXPECT_FALSE(first->state().offscreen);
    EXPECT_TRUE(last->state().offscreen);
    last->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(first->state().offscreen);
    EXPECT_FALSE(last->state().offscreen);
}

TEST_F(Accessibility, doesNotTypeIntoADisabledField)
{
    showForm();
    auto *date = one(QStringLiteral("DATE"), QAccessible::EditableText);
    EXPECT_TRUE(date->state().disabled);
    const QString before = date->text(QAccessible::Value);
    date->editableTextInterface()->replaceText(0, 10, QStringLiteral("2020-01-01"));
    EXPECT_EQ(date->text(QAccessible::Value), before);
    press(one(QStringLiteral("DATE"), QAccessible::CheckBox));
    EXPECT_FALSE(date->state().disabled);
    date->editableTextInterface()->replaceText(0, 10, QStringLiteral("2020-01-01"));
    EXPECT_EQ(date->text(QAccessible::Value), QStringLiteral("2020-01-01"));
}

TEST_F(Accessibility, movesTheFocus)
{
    showForm();
    auto *field = one(QStringLiteral("ISO *"), QAccessible::EditableText);
    field->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(field->state().focused);
    auto *cancel = one(QStringLiteral("CANCEL"), QAccessible::Button);
    cancel->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_TRUE(cancel->state().focused);
    EXPECT_FALSE(field->state().focused);
}

TEST_F(Accessibility, saysWhereThingsStand)
{
    const auto *choose = one(QStringLiteral("CHOOSE FOLDER"), QAccessible::Button);
    const QRect window(m_window->position(), m_window->size());
    EXPECT_TRUE(window.contains(choose->rect()));
    EXPECT_NEAR(choose->rect().center().x(), window.center().x(), 1);
    EXPECT_FALSE(choose->state().invisible);
    EXPECT_EQ(choose->parent(), QAccessible::queryAccessibleInterface(m_window.get()));
}

} // namespace
} // namespace quillmark
