// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/UpdateWindow.h"
#include "support/Printers.h"

#include <QDesktopServices>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmark {
namespace {

using Session = IngestViewModel;
using Stage = Updater::Stage;
using test::UpdateWindow;

TEST_F(UpdateWindow, menuFollowsTheUpdater)
{
    m_feed.add(test::nextVersion);
    stall(test::PublishedFeed::path(), 1000);
    key(Qt::Key_F10);
    auto *line = one(test::updateMenuItem, QAccessible::MenuItem);
    EXPECT_FALSE(line->state().disabled);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(updater().stage(), Stage::Checking);
    EXPECT_TRUE(all(test::updateMenuItem, QAccessible::MenuItem).isEmpty())
        << "the menu has closed";
    EXPECT_TRUE(isShown());
    key(Qt::Key_F10);
    EXPECT_TRUE(all(test::updateMenuItem, QAccessible::MenuItem).isEmpty())
        << "nor can it be opened";

    key(Qt::Key_Escape);
    EXPECT_FALSE(isShown());
    key(Qt::Key_F10);
    EXPECT_FALSE(one(test::updateMenuItem, QAccessible::MenuItem)->state().disabled);
}

TEST_F(UpdateWindow, openMenuIsDisabledWhileACheckRuns)
{
    m_feed.add(test::nextVersion);
    stall(test::PublishedFeed::path(), 1000);
    key(Qt::Key_F10);
    auto *line = one(test::updateMenuItem, QAccessible::MenuItem);
    updater().checkForUpdates();
    EXPECT_TRUE(line->state().disabled);
    updater().dismiss();
    EXPECT_FALSE(line->state().disabled);
}

TEST_F(UpdateWindow, saysThatItChecks)
{
    m_feed.add(test::nextVersion);
    stall(test::PublishedFeed::path(), 1000);
    choose();
    EXPECT_TRUE(shows(QStringLiteral("Checking for updates…")));
    EXPECT_EQ(focusedName(), QStringLiteral("CANCEL"));
    EXPECT_FALSE(one(QStringLiteral("CHOOSE FOLDER"), QAccessible::Button)->state().focusable)
        << "what lies below is out of reach";
    press(button("CANCEL"));
    EXPECT_FALSE(isShown());
    EXPECT_EQ(updater().stage(), Stage::Idle);
    EXPECT_EQ(focusedName(), QStringLiteral("CHOOSE FOLDER"));
}

TEST_F(UpdateWindow, saysThatThereIsNothingNewer)
{
    m_feed.add(QStringLiteral("1.0"));
    chooseAndWait(Stage::UpToDate);
    EXPECT_TRUE(shows(QStringLiteral("You’re up to date")));
    EXPECT_TRUE(shows(QStringLiteral("Quillmark 1.0 is the newest version.")));
    EXPECT_EQ(focusedName(), QStringLiteral("CLOSE"));
    EXPECT_TRUE(focused()->text(QAccessible::Description).contains(QStringLiteral("newest")));
    key(Qt::Key_Return);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(focusedName(), QStringLiteral("CHOOSE FOLDER"));
}

TEST_F(UpdateWindow, asksWhatToDoAboutANewVersion)
{
    AppcastItem item = m_feed.item(test::nextVersion);
    item.notesFormat = AppcastItem::NotesFormat::Markdown;
    item.notes = QStringLiteral("# Better\n\nSee [it](https://example.org/a). <b>bold</b>");
    item.notesAddress = QUrl(QStringLiteral("https://example.org/notes"));
    m_feed.add(item);
    chooseAndWait(Stage::Available);
    for (const char *text :
         {"A new version is available", "Quillmark 2.0 can be installed. You have 1.0.", "Better",
          "See it. <b>bold</b>"}) {
        EXPECT_TRUE(shows(QString::fromUtf8(text))) << text;
    }
    EXPECT_EQ(focusedName(), QStringLiteral("INSTALL"));
    for (const char *text : {"INSTALL", "SKIP THIS VERSION", "REMIND ME LATER"}) {
        EXPECT_FALSE(button(text)->state().disabled) << text;
    }
    for (const char *address : {"https://example.org/a", "https://example.org/notes"}) {
        one(QString::fromLatin1(address), QAccessible::Button);
    }
    EXPECT_EQ(m_server.requests().size(), 2) << "nothing but the feed and its signature";
}

/// Takes note of the addresses that are to be opened in the browser.
class Browser : public QObject
{
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }
    Q_DISABLE_COPY_MOVE(Browser)

    Q_INVOKABLE void open(const QUrl &address) { m_opened.append(address); }
    const QList<QUrl> &opened() const { return m_opened; }

private:
    QList<QUrl> m_opened;
};

TEST_F(UpdateWindow, linksOpenWhenTheyArePressed)
{
    const Browser browser;
    AppcastItem item = m_feed.item(test::nextVersion);
    item.notesFormat = AppcastItem::NotesFormat::Markdown;
    item.notes = QStringLiteral("[it](https://example.org/a?b=c#d)");
    m_feed.add(item);
    chooseAndWait(Stage::Available);
    EXPECT_TRUE(browser.opened().isEmpty());
    press(button("https://example.org/a?b=c#d"));
    EXPECT_EQ(browser.opened(), QList<QUrl>{QUrl(QStringLiteral("https://example.org/a?b=c#d"))});
    EXPECT_TRUE(isShown());
}

TEST_F(UpdateWindow, keyboardStaysInTheOffer)
{
    m_feed.add(test::nextVersion);
    chooseAndWait(Stage::Available);
    QStringList stops;
    for (int i = 0; i < 6; ++i) {
        stops << focusedName();
        key(Qt::Key_Tab);
    }
    const QStringList wanted{QStringLiteral("INSTALL"), QStringLiteral("SKIP THIS VERSION"),
                             QStringLiteral("REMIND ME LATER")};
    EXPECT_EQ(stops, wanted + wanted);
}

TEST_F(UpdateWindow, skips)
{
    m_feed.add(test::nextVersion);
    chooseAndWait(Stage::Available);
    press(button("SKIP THIS VERSION"));
    EXPECT_FALSE(isShown());
    EXPECT_EQ(UpdateMemory::skippedVersion(), test::nextVersion);
    EXPECT_EQ(focusedName(), QStringLiteral("CHOOSE FOLDER"));
}

TEST_F(UpdateWindow, remindsLater)
{
    m_feed.add(test::nextVersion);
    for (const bool byKey : {false, true}) {
        chooseAndWait(Stage::Available);
        if (byKey) {
            key(Qt::Key_Escape);
        } else {
            press(button("REMIND ME LATER"));
        }
        EXPECT_FALSE(isShown());
        EXPECT_EQ(updater().stage(), Stage::Idle);
        EXPECT_EQ(UpdateMemory::skippedVersion(), QString());
    }
}

TEST_F(UpdateWindow, showsHowFarTheDownloadIs)
{
    m_feed.add(m_feed.item(test::nextVersion, QByteArray(2'500'000, 'p')));
    test::Answer half;
    half.body = QByteArray(1'250'000, 'p');
    half.announced = 2'500'000;
    half.manner = test::Answer::Manner::Stall;
    m_server.answer(test::nextPackage, half);
    chooseAndWait(Stage::Available);
    press(button("INSTALL"));
    EXPECT_EQ(focusedName(), QStringLiteral("CANCEL"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return updater().received() == 1'250'000; }, 20'000));
    EXPECT_TRUE(shows(QStringLiteral("Downloading Quillmark 2.0…")));
    EXPECT_TRUE(shows(QStringLiteral("1.2 MB of 2.5 MB")) ||
                shows(QStringLiteral("1.3 MB of 2.5 MB")));
    auto *bar = one(QStringLiteral("Downloading Quillmark 2.0…"), QAccessible::ProgressBar);
    EXPECT_EQ(bar->text(QAccessible::Description), QStringLiteral("50 %"));
    press(button("CANCEL"));
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(nothingIsLeft());
    EXPECT_TRUE(m_opened.isEmpty());
}

TEST_F(UpdateWindow, handsTheVerifiedPackageOver)
{
    m_feed.add(test::nextVersion);
    chooseAndWait(Stage::Available);
    press(button("INSTALL"));
    ASSERT_TRUE(reaches(updater(), Stage::HandedOver));
    EXPECT_TRUE(shows(QStringLiteral("Ready to install")));
    EXPECT_EQ(focusedName(), QStringLiteral("CLOSE"));
    ASSERT_EQ(m_opened.size(), 1);
    EXPECT_TRUE(shows(QStringLiteral("If nothing opens, the package is at ") +
                      m_opened.first().toLocalFile()));
    key(Qt::Key_Backtab);
    EXPECT_TRUE(focusedName().endsWith(QStringLiteral("quillmark_2.0.deb"))) << "can be copied";
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    EXPECT_FALSE(isShown());
}

TEST_F(UpdateWindow, saysInWordsWhatFailed)
{
    m_feed.add(test::nextVersion);
    chooseAndWait(Stage::Available);
    m_server.answer(test::nextPackage, QByteArray("b package"));
    press(button("INSTALL"));
    ASSERT_TRUE(reaches(updater(), Stage::Failed));
    EXPECT_TRUE(shows(QStringLiteral("The update failed")));
    EXPECT_TRUE(shows(UpdateError(UpdateError::Case::packageForged).description()));
    EXPECT_EQ(focusedName(), QStringLiteral("CLOSE"));
    key(Qt::Key_Escape);
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(updater().canCheckForUpdates());
}

TEST_F(UpdateWindow, opensAgainAndAgain)
{
    m_feed.add(QStringLiteral("1.0"));
    for (int i = 0; i < 3; ++i) {
        chooseAndWait(Stage::UpToDate);
        EXPECT_TRUE(isShown());
        press(button("CLOSE"));
        EXPECT_FALSE(isShown());
    }
}

TEST_F(UpdateWindow, leavesTheKeyboardToAScreenThatCameMeanwhile)
{
    m_feed.add(QStringLiteral("1.0"));
    chooseAndWait(Stage::UpToDate);
    setState(Session::Error{QStringLiteral("It broke.")});
    EXPECT_EQ(focusedName(), QStringLiteral("CLOSE"));
    key(Qt::Key_Escape);
    EXPECT_EQ(focusedName(), QStringLiteral("TRY AGAIN"));
}

} // namespace
} // namespace quillmark

#include "UpdateWindowTest.moc"
