// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/UpdaterFixture.h"
#include "app/updates/CheckForUpdatesViewModel.h"
#include "app/updates/StandardUpdaterController.h"
#include "app/updates/UpdaterCoordinator.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using Stage = Updater::Stage;

const QString feedPath = test::PublishedFeed::path();

using UpdaterTest = test::UpdaterCase;

TEST_F(UpdaterTest, withoutAConfigurationItNeverStarts)
{
    Updater updater(std::nullopt, surroundings());
    updater.start();
    EXPECT_FALSE(updater.canCheckForUpdates());
    updater.checkForUpdates();
    EXPECT_EQ(updater.stage(), Stage::Idle);
    EXPECT_FALSE(updater.isWindowWanted());
}

TEST_F(UpdaterTest, canCheckOnceItWasStarted)
{
    Updater updater(configuration(), surroundings());
    EXPECT_FALSE(updater.canCheckForUpdates());
    updater.checkForUpdates();
    EXPECT_EQ(updater.stage(), Stage::Idle);
    updater.start();
    EXPECT_TRUE(updater.canCheckForUpdates());
    EXPECT_TRUE(m_server.requests().isEmpty());
}

TEST_F(UpdaterTest, cannotCheckWhileItChecks)
{
    m_feed.add(QStringLiteral("1.0"));
    const auto updater = makeUpdater();
    const CheckForUpdatesViewModel model(updater.get());
    QSignalSpy announcements(&model, &CheckForUpdatesViewModel::canCheckForUpdatesWillChange);
    QSignalSpy changes(&model, &CheckForUpdatesViewModel::canCheckForUpdatesChanged);
    EXPECT_TRUE(model.canCheckForUpdates());

    updater->checkForUpdates();
    EXPECT_EQ(updater->stage(), Stage::Checking);
    EXPECT_FALSE(model.canCheckForUpdates());
    updater->checkForUpdates();
    ASSERT_TRUE(reaches(*updater, Stage::UpToDate));
    EXPECT_TRUE(model.canCheckForUpdates());
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(announcements.count(), 2);
    EXPECT_EQ(m_server.count(feedPath), 1);
}

TEST_F(UpdaterTest, offersANewVersionWithItsNotes)
{
    const auto updater = offering();
    EXPECT_TRUE(updater->isWindowWanted());
    EXPECT_FALSE(updater->canCheckForUpdates());
    EXPECT_EQ(updater->newVersion(), m_next);
    EXPECT_EQ(updater->currentVersion(), QStringLiteral("1.0"));
    ASSERT_EQ(updater->notes()->rowCount(), 1);
    EXPECT_EQ(updater->notes()->data(updater->notes()->index(0), NotesModel::TextRole).toString(),
              QStringLiteral("What is new in 2.0"));
    EXPECT_EQ(m_server.count(test::PublishedFeed::packagePath(m_next)), 0);
}

TEST_F(UpdaterTest, hasThePackageInstalledByTheDesktop)
{
    const auto updater = offering();
    updater->install();
    EXPECT_EQ(updater->stage(), Stage::Downloading);
    EXPECT_FALSE(updater->canCheckForUpdates());
    ASSERT_TRUE(reaches(*updater, Stage::HandedOver));
    ASSERT_EQ(m_opened.size(), 1);
    const std::filesystem::path file = m_opened.first().toLocalFile().toStdString();
    EXPECT_EQ(file.filename(), "quillmark_2.0.deb");
    EXPECT_EQ(test::readFile(file), "a package");
    EXPECT_EQ(updater->packageFile(), m_opened.first().toLocalFile());
    EXPECT_EQ(updater->received(), 9.0);
    EXPECT_EQ(updater->expected(), 9.0);
    updater->dismiss();
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_EQ(updater->packageFile(), QString());
    EXPECT_TRUE(updater->canCheckForUpdates());
    QCoreApplication::processEvents();
    EXPECT_TRUE(std::filesystem::exists(file)) << "the installer may not have read it yet";
}

TEST_F(UpdaterTest, checkRemovesPackagesOfADayAgo)
{
    using std::filesystem::file_time_type;
    const auto old = std::filesystem::path(m_cache.write("quillmark/updates/a/q.deb", "old"));
    const auto young = std::filesystem::path(m_cache.write("quillmark/updates/b/q.deb", "young"));
    std::filesystem::last_write_time(old.parent_path(),
                                     file_time_type::clock::now() - std::chrono::hours(25));
    m_feed.add(QStringLiteral("1.0"));
    const auto updater = makeUpdater();
    EXPECT_TRUE(std::filesystem::exists(old));
    updater->checkForUpdates();
    ASSERT_TRUE(reaches(*updater, Stage::UpToDate));
    EXPECT_FALSE(std::filesystem::exists(old.parent_path()));
    EXPECT_TRUE(std::filesystem::exists(young));
}

TEST_F(UpdaterTest, withoutAnInstallerNothingStays)
{
    m_hasInstaller = false;
    const auto updater = offering();
    updater->install();
    ASSERT_TRUE(reaches(*updater, Stage::Failed));
    EXPECT_EQ(updater->errorText(), UpdateError(UpdateError::Case::noInstaller).description());
    EXPECT_TRUE(nothingIsLeft());
}

TEST_F(UpdaterTest, cancelledWhileItFetchesTheFeed)
{
    m_feed.add(m_next);
    stall(feedPath, 1000);
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_server.count(feedPath) == 1; }, 20'000));
    updater->dismiss();
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_TRUE(updater->canCheckForUpdates());
    EXPECT_FALSE(UpdateMemory::lastCheck());
}

TEST_F(UpdaterTest, cancelledWhileItFetchesTheSignature)
{
    m_feed.add(m_next);
    const QString signature = feedPath + QStringLiteral(".sig");
    stall(signature, 100);
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_server.count(signature) == 1; }, 20'000));
    updater->dismiss();
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_FALSE(UpdateMemory::newestFeed(configuration().feed));
}

TEST_F(UpdaterTest, cancelledWhileItAsks)
{
    const auto updater = offering();
    updater->dismiss();
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_EQ(UpdateMemory::skippedVersion(), QString());
    EXPECT_EQ(m_server.count(test::PublishedFeed::packagePath(m_next)), 0);
}

TEST_F(UpdaterTest, cancelledWhileItDownloads)
{
    const auto updater = offering();
    stall(test::PublishedFeed::packagePath(m_next), 9);
    updater->install();
    ASSERT_TRUE(QTest::qWaitFor([&] { return updater->received() > 0; }, 20'000));
    EXPECT_FALSE(nothingIsLeft());
    updater->dismiss();
    EXPECT_EQ(updater->stage(), Stage::Idle);
    EXPECT_TRUE(nothingIsLeft());
    EXPECT_TRUE(m_opened.isEmpty());
}

TEST_F(UpdaterTest, cancelledWhileItVerifies)
{
    m_feed.add(m_feed.item(m_next, QByteArray(5'000'000, 'p')));
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    ASSERT_TRUE(reaches(*updater, Stage::Available));
    QObject::connect(updater.get(), &Updater::stageChanged, updater.get(), [&] {
        if (updater->stage() == Stage::Verifying) {
            updater->dismiss();
        }
    });
    updater->install();
    ASSERT_TRUE(reaches(*updater, Stage::Idle));
    EXPECT_TRUE(nothingIsLeft());
    QTest::qWait(0);
    EXPECT_TRUE(m_opened.isEmpty());
}

TEST_F(UpdaterTest, goneWhileItDownloads)
{
    auto updater = offering();
    stall(test::PublishedFeed::packagePath(m_next), 9);
    updater->install();
    ASSERT_TRUE(QTest::qWaitFor([&] { return updater->received() > 0; }, 20'000));
    updater.reset();
    EXPECT_TRUE(nothingIsLeft());
}

TEST_F(UpdaterTest, saysWhatIsWrongWithAFeed)
{
    m_feed.add(m_next);
    const auto updater = makeUpdater();
    m_server.answer(feedPath, QByteArray("another feed"));
    updater->checkForUpdates();
    expectFailure(*updater, UpdateError::Case::feedForged);
    updater->dismiss();
    EXPECT_EQ(updater->errorText(), QString());

    m_server.redirect(feedPath, feedPath.toLatin1());
    updater->checkForUpdates();
    expectFailure(*updater, UpdateError::Case::tooManyRedirects);

    test::Answer broken;
    broken.status = 500;
    m_server.answer(feedPath, broken);
    updater->checkForUpdates();
    expectFailure(*updater, UpdateError::Case::badStatus, QStringLiteral("500"));
    EXPECT_TRUE(UpdateMemory::lastCheck());
}

TEST_F(UpdaterTest, refusesAPackageThatWasSwapped)
{
    const auto updater = offering();
    m_server.answer(test::PublishedFeed::packagePath(m_next), QByteArray("b package"));
    updater->install();
    expectFailure(*updater, UpdateError::Case::packageForged);
}

TEST_F(UpdaterTest, refusesAPackageOfAnotherSize)
{
    const auto updater = offering();
    m_server.answer(test::PublishedFeed::packagePath(m_next), QByteArray("a package and more"));
    updater->install();
    expectFailure(*updater, UpdateError::Case::packageSizeWrong);
}

TEST_F(UpdaterTest, neverGoesBack)
{
    m_feed.add(QStringLiteral("0.9"));
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    EXPECT_TRUE(reaches(*updater, Stage::UpToDate));
}

TEST_F(UpdaterTest, onlySafePagesOfNotesAreOffered)
{
    AppcastItem item = m_feed.item(m_next);
    item.notesAddress = QUrl(QStringLiteral("file:///etc/hostname"));
    m_feed.add(item);
    const auto updater = makeUpdater();
    updater->checkForUpdates();
    ASSERT_TRUE(reaches(*updater, Stage::Available));
    EXPECT_EQ(updater->notes()->rowCount(), 1);
    updater->dismiss();

    item.version = QStringLiteral("3.0");
    item.notesAddress = QUrl(QStringLiteral("https://example.org/notes"));
    m_feed.add(item);
    updater->checkForUpdates();
    ASSERT_TRUE(reaches(*updater, Stage::Available));
    ASSERT_EQ(updater->notes()->rowCount(), 2);
    EXPECT_EQ(updater->notes()->data(updater->notes()->index(1), NotesModel::AddressRole).toUrl(),
              item.notesAddress);
}

TEST(CheckForUpdatesViewModel, startsFalseAndFollowsNobody)
{
    CheckForUpdatesViewModel model;
    EXPECT_FALSE(model.canCheckForUpdates());
    EXPECT_FALSE(CheckForUpdatesViewModel(nullptr, nullptr).canCheckForUpdates());
}

TEST_F(UpdaterTest, viewModelLetsGoOfAnUpdater)
{
    const auto updater = makeUpdater();
    CheckForUpdatesViewModel model(updater.get());
    EXPECT_TRUE(model.canCheckForUpdates());
    model.setUpdater(nullptr);
    EXPECT_FALSE(model.canCheckForUpdates());
    updater->checkForUpdates();
    updater->dismiss();
    EXPECT_FALSE(model.canCheckForUpdates());
}

TEST_F(UpdaterTest, controllerStartsItWhereThatIsWanted)
{
    StandardUpdaterController idle(false, configuration(), surroundings());
    EXPECT_FALSE(idle.updater()->canCheckForUpdates());
    StandardUpdaterController started(true, configuration(), surroundings());
    EXPECT_TRUE(started.updater()->canCheckForUpdates());
}

TEST_F(UpdaterTest, coordinatorOfABuildWithoutAFeedCannotCheck)
{
    UpdaterCoordinator coordinator;
    EXPECT_FALSE(coordinator.controller()->updater()->canCheckForUpdates());
    coordinator.controller()->updater()->checkForUpdates();
    EXPECT_EQ(coordinator.controller()->updater()->stage(), Stage::Idle);
}

} // namespace
} // namespace quillmark
