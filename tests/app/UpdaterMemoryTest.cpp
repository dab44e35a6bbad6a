// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/UpdaterFixture.h"
#include "appcast/FeedWriter.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using Stage = Updater::Stage;
using UpdaterMemory = test::UpdaterCase;

const QString feedPath = test::PublishedFeed::path();

TEST_F(UpdaterMemory, remembersTheNewestFeed)
{
    m_feed.add(QStringLiteral("1.5"));
    const QByteArray old = m_feed.bytes();
    m_feed.add(m_next);
    makeUpdater(); // one that only starts believes nothing
    {
        const auto updater = makeUpdater();
        updater->checkForUpdates();
        ASSERT_TRUE(reaches(*updater, Stage::Available));
    }
    m_feed.publish(old);
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    expectFailure(*updater, UpdateError::Case::feedReplayed);
}

TEST_F(UpdaterMemory, refusesAnOldFeedWhateverBecomesOfTheSettings)
{
    m_feed.add(QStringLiteral("1.5"));
    const QByteArray old = m_feed.bytes();
    m_feed.add(m_next);
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    ASSERT_TRUE(reaches(*updater, Stage::Available));
    updater->dismiss();
    test::forgetSettings();
    m_feed.publish(old);
    updater->checkForUpdates();
    expectFailure(*updater, UpdateError::Case::feedReplayed);
}

TEST_F(UpdaterMemory, feedFromTheFutureDoesNotShutOutLaterOnes)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto offered = [&](const QString &version, const QDateTime &made) {
        m_feed.publish(tools::feedWith(tools::emptyFeed(), m_feed.item(version), made));
        const auto updater = makeUpdater();
        updater->checkForUpdates();
        EXPECT_TRUE(reaches(*updater, Stage::Available)) << qPrintable(updater->errorText());
        return updater->newVersion();
    };
    EXPECT_EQ(offered(m_next, now.addYears(10)), m_next);
    ASSERT_TRUE(UpdateMemory::newestFeed(configuration().feed));
    EXPECT_GE(*UpdateMemory::newestFeed(configuration().feed), now);
    EXPECT_LE(*UpdateMemory::newestFeed(configuration().feed), QDateTime::currentDateTimeUtc());
    EXPECT_EQ(offered(QStringLiteral("3.0"), now.addSecs(3600)), QStringLiteral("3.0"));
}

TEST_F(UpdaterMemory, feedThatIsNotBelievedLeavesNoDate)
{
    m_feed.add(m_next);
    m_feed.publishSignature(m_feed.signatureOf("another feed"));
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    expectFailure(*updater, UpdateError::Case::feedForged);
    EXPECT_FALSE(UpdateMemory::newestFeed(configuration().feed));
}

TEST_F(UpdaterMemory, skippedVersionIsNotOfferedOnSchedule)
{
    offering()->skip();
    EXPECT_EQ(UpdateMemory::skippedVersion(), m_next);
    test::forgetSetting("co.larkhollow.quillmark.updates.lastCheck");
    const auto updater = makeUpdater(true);
    QSignalSpy stages(updater.get(), &Updater::stageChanged);
    ASSERT_TRUE(QTest::qWaitFor([&] { return stages.count() == 2; }, 20'000));
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_TRUE(UpdateMemory::lastCheck());

    updater->checkForUpdates();
    EXPECT_TRUE(reaches(*updater, Stage::Available)) << "who asks is told";
}

TEST_F(UpdaterMemory, versionAfterASkippedOneIsOffered)
{
    offering()->skip();
    m_feed.add(QStringLiteral("2.0.1"));
    test::forgetSetting("co.larkhollow.quillmark.updates.lastCheck");
    const auto updater = makeUpdater(true);
    ASSERT_TRUE(reaches(*updater, Stage::Available));
    EXPECT_EQ(updater->newVersion(), QStringLiteral("2.0.1"));
}

TEST_F(UpdaterMemory, scheduledCheckShowsOnlyANewVersion)
{
    m_feed.add(m_next);
    const auto updater = makeUpdater(true);
    EXPECT_FALSE(updater->isWindowWanted());
    ASSERT_TRUE(reaches(*updater, Stage::Checking));
    EXPECT_FALSE(updater->isWindowWanted());
    EXPECT_FALSE(updater->canCheckForUpdates());
    ASSERT_TRUE(reaches(*updater, Stage::Available));
    EXPECT_TRUE(updater->isWindowWanted());
    EXPECT_FALSE(updater->isUserInitiated());
    updater->install();
    EXPECT_TRUE(updater->isWindowWanted()) << "from now on the user wants it";
}

TEST_F(UpdaterMemory, scheduledCheckFailsSilently)
{
    const auto updater = makeUpdater(true);
    QSignalSpy stages(updater.get(), &Updater::stageChanged);
    ASSERT_TRUE(QTest::qWaitFor([&] { return stages.count() == 2; }, 20'000));
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_FALSE(updater->isWindowWanted());
    EXPECT_EQ(m_server.count(feedPath), 1);
    EXPECT_TRUE(UpdateMemory::lastCheck()) << "not again before the next is due";
}

TEST_F(UpdaterMemory, oneProcessChecksOnceWhateverBecomesOfTheSettings)
{
    m_feed.add(QStringLiteral("1.0"));
    const auto updater = makeUpdater(true);
    QSignalSpy stages(updater.get(), &Updater::stageChanged);
    ASSERT_TRUE(QTest::qWaitFor([&] { return stages.count() == 2; }, 20'000));
    test::forgetSettings();
    updater->dismiss(); // has the schedule begin anew
    QTest::qWait(0);
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_EQ(m_server.count(feedPath), 1);
}

TEST_F(UpdaterMemory, scheduleKeepsTheInterval)
{
    m_feed.add(m_next);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto updaterAfter = [&](const QDateTime &last) {
        UpdateMemory::setLastCheck(last);
        return makeUpdater(true);
    };
    for (const QDateTime &recent : {now, now.addSecs(60 - 86'400)}) {
        const auto updater = updaterAfter(recent);
        QTest::qWait(0);
        EXPECT_EQ(updater->stage(), Stage::Idle);
    }
    EXPECT_TRUE(m_server.requests().isEmpty());
    const QDateTime fromAWrongClock = now.addDays(100);
    for (const QDateTime &due : {now.addSecs(-86'400), fromAWrongClock}) {
        EXPECT_TRUE(reaches(*updaterAfter(due), Stage::Checking));
    }
}

TEST_F(UpdaterMemory, withoutAutomaticChecksNothingIsFetched)
{
    m_feed.add(m_next);
    const auto updater = makeUpdater(false);
    QTest::qWait(0);
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_TRUE(m_server.requests().isEmpty());
}

} // namespace
} // namespace quillmark
