// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleWindow.h"
#include "app/UpdaterFixture.h"
#include "app/updates/UpdaterCoordinator.h"
#include "support/Printers.h"

#include <QDesktopServices>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillmark {
namespace {

using Session = IngestViewModel;
using Stage = Updater::Stage;

const QString menuItem = QStringLiteral("Check for Updates…");
const QString next = QStringLiteral("2.0");
const QString packagePath = test::PublishedFeed::packagePath(next);

/// What has to be there before the window.
class WithCoordinator : protected test::UpdaterFixture
{
protected:
    explicit WithCoordinator(bool automatic)
    {
        m_coordinator =
            std::make_unique<UpdaterCoordinator>(configuration(automatic), surroundings());
        if (automatic) {
            m_server.hold(); // until the test has published something
        }
    }

    QVariantMap properties() const
    {
        return {{QStringLiteral("updates"), QVariant::fromValue(m_coordinator.get())}};
    }
    Updater &updater() { return *m_coordinator->controller()->updater(); }

    std::unique_ptr<UpdaterCoordinator> m_coordinator;
};

class UpdateWindow : protected WithCoordinator, public test::AccessibleWindow
{
protected:
    explicit UpdateWindow(bool automatic = false)
        : WithCoordinator(automatic), AccessibleWindow(properties())
    {}

    void choose()
    {
        key(Qt::Key_F10);
        press(one(menuItem, QAccessible::MenuItem));
    }
    void chooseAndWait(Stage stage)
    {
        choose();
        ASSERT_TRUE(reaches(updater(), stage)) << qPrintable(updater().errorText());
    }
    bool isShown() const { return dialogs() == 1; }
    qsizetype dialogs() const
    {
        return all(QStringLiteral("Software Update"), QAccessible::Dialog).size();
    }
    bool shows(const QString &text) const { return all(text, QAccessible::StaticText).size() == 1; }
    QAccessibleInterface *button(const char *text) const
    {
        return one(QString::fromLatin1(text), QAccessible::Button);
    }
};

/// The schedule has begun to look; the server waits to be released.
class ScheduledUpdate : public UpdateWindow
{
protected:
    ScheduledUpdate() : UpdateWindow(true) {}

    void SetUp() override { ASSERT_TRUE(reaches(updater(), Stage::Checking)); }
    void publish()
    {
        m_feed.add(next);
        m_server.release();
        ASSERT_TRUE(reaches(updater(), Stage::Available));
    }
};

TEST_F(UpdateWindow, menuFollowsTheUpdater)
{
    m_feed.add(next);
    stall(test::PublishedFeed::path(), 1000);
    key(Qt::Key_F10);
    auto *line = one(menuItem, QAccessible::MenuItem);
    EXPECT_FALSE(line->state().disabled);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(updater().stage(), Stage::Checking);
    EXPECT_TRUE(all(menuItem, QAccessible::MenuItem).isEmpty()) << "the menu has closed";
    EXPECT_TRUE(isShown());
    key(Qt::Key_F10);
    EXPECT_TRUE(all(menuItem, QAccessible::MenuItem).isEmpty()) << "nor can it be opened";

    key(Qt::Key_Escape);
    EXPECT_FALSE(isShown());
    key(Qt::Key_F10);
    EXPECT_FALSE(one(menuItem, QAccessible::MenuItem)->state().disabled);
}

TEST_F(UpdateWindow, openMenuIsDisabledWhileACheckRuns)
{
    m_feed.add(next);
    stall(test::PublishedFeed::path(), 1000);
    key(Qt::Key_F10);
    auto *line = one(menuItem, QAccessible::MenuItem);
    updater().checkForUpdates();
    EXPECT_TRUE(line->state().disabled);
    updater().dismiss();
    EXPECT_FALSE(line->state().disabled);
}

TEST_F(UpdateWindow, saysThatItChecks)
{
    m_feed.add(next);
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
    AppcastItem item = m_feed.item(next);
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
    AppcastItem item = m_feed.item(next);
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
    m_feed.add(next);
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
    m_feed.add(next);
    chooseAndWait(Stage::Available);
    press(button("SKIP THIS VERSION"));
    EXPECT_FALSE(isShown());
    EXPECT_EQ(UpdateMemory::skippedVersion(), next);
    EXPECT_EQ(focusedName(), QStringLiteral("CHOOSE FOLDER"));
}

TEST_F(UpdateWindow, remindsLater)
{
    m_feed.add(next);
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
    m_feed.add(m_feed.item(next, QByteArray(2'500'000, 'p')));
    test::Answer half;
    half.body = QByteArray(1'250'000, 'p');
    half.announced = 2'500'000;
    half.manner = test::Answer::Manner::Stall;
    m_server.answer(packagePath, half);
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
    m_feed.add(next);
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
    m_feed.add(next);
    chooseAndWait(Stage::Available);
    m_server.answer(packagePath, QByteArray("b package"));
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

TEST_F(ScheduledUpdate, showsOnlyANewVersion)
{
    EXPECT_FALSE(isShown());
    publish();
    EXPECT_TRUE(isShown());
}

TEST_F(ScheduledUpdate, doesNotComeBetween)
{
    setState(Session::ManualEntry{"/rolls/roll 12", std::nullopt});
    publish();
    EXPECT_FALSE(isShown());
    setState(Session::Idle{});
    EXPECT_TRUE(isShown());
}

TEST_F(ScheduledUpdate, keyThatWasMeantForSomethingElseInstallsNothing)
{
    publish();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(focusedName(), QStringLiteral("REMIND ME LATER"));
    EXPECT_TRUE(focused()->text(QAccessible::Description).contains(QStringLiteral("new version")));
    key(Qt::Key_Return);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(updater().stage(), Stage::Idle);
    EXPECT_EQ(m_server.count(packagePath), 0);
}

TEST_F(ScheduledUpdate, canBeAskedForWhileItsOfferWaits)
{
    setState(Session::ManualEntry{"/rolls/roll 12", std::nullopt});
    publish();
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(updater().canCheckForUpdates());
    choose();
    EXPECT_TRUE(isShown());
    ASSERT_TRUE(reaches(updater(), Stage::Available));
    EXPECT_TRUE(updater().isUserInitiated());
    EXPECT_FALSE(updater().canCheckForUpdates());
    EXPECT_EQ(dialogs(), 1);
    EXPECT_EQ(focusedName(), QStringLiteral("INSTALL"));
    key(Qt::Key_Escape);
    EXPECT_EQ(updater().stage(), Stage::Idle);
}

TEST_F(ScheduledUpdate, waitsForTheMenuToClose)
{
    key(Qt::Key_F10);
    publish();
    EXPECT_FALSE(isShown());
    key(Qt::Key_Escape);
    EXPECT_TRUE(isShown());
}

TEST_F(ScheduledUpdate, showsNothingWhereItFails)
{
    m_server.release();
    ASSERT_TRUE(reaches(updater(), Stage::Idle));
    EXPECT_FALSE(isShown());
    EXPECT_EQ(m_server.count(test::PublishedFeed::path()), 1);
}

} // namespace
} // namespace quillmark

#include "UpdateWindowTest.moc"
