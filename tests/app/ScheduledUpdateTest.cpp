// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/UpdateWindow.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using Session = IngestViewModel;
using Stage = Updater::Stage;
using test::UpdateWindow;

/// The schedule has begun to look; the server waits to be released.
class ScheduledUpdate : public UpdateWindow
{
protected:
    ScheduledUpdate() : UpdateWindow(true) {}

    void SetUp() override { ASSERT_TRUE(reaches(updater(), Stage::Checking)); }
    void publish()
    {
        m_feed.add(test::nextVersion);
        m_server.release();
        ASSERT_TRUE(reaches(updater(), Stage::Available));
    }
};

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
    EXPECT_EQ(m_server.count(test::nextPackage), 0);
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
