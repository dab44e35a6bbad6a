// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/UpdateMemory.h"
#include "app/updates/Updater.h"
#include "support/StoredSettings.h"
#include "support/TempDir.h"
#include "updates/PublishedFeed.h"
#include "updates/TestAuthority.h"
#include "updates/TestServer.h"

#include <QList>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace quillmark::test {

/// An updater of version 1.0, a publisher's feed for it, and an installer that only takes note.
class UpdaterFixture
{
protected:
    UpdaterFixture()
    {
        forgetSettings();
        ::setenv("XDG_CACHE_HOME", m_cache.path().c_str(), 1);
    }
    ~UpdaterFixture() { ::unsetenv("XDG_CACHE_HOME"); }
    Q_DISABLE_COPY_MOVE(UpdaterFixture)

    UpdaterSurroundings surroundings()
    {
        using namespace std::chrono_literals;
        UpdaterSurroundings found;
        found.currentVersion = QStringLiteral("1.0");
        found.system = {.os = QStringLiteral("linux"),
                        .systemVersion = QStringLiteral("6.1"),
                        .architecture = QStringLiteral("x86_64")};
        found.openPackage = [this](const QUrl &file) {
            m_opened.append(file);
            return m_hasInstaller;
        };
        found.startDelay = 0ms;
        return found;
    }
    UpdateConfiguration configuration(bool automatic = false) const
    {
        UpdateConfiguration read = m_feed.configuration();
        read.automatic = automatic;
        return read;
    }
    std::unique_ptr<Updater> makeUpdater(bool automatic = false)
    {
        auto updater = std::make_unique<Updater>(configuration(automatic), surroundings());
        updater->start();
        return updater;
    }
    static bool reaches(const Updater &updater, Updater::Stage stage)
    {
        return QTest::qWaitFor([&] { return updater.stage() == stage; }, 20'000);
    }
    bool nothingIsLeft() const
    {
        const std::filesystem::path place = m_cache / "quillmark/updates";
        return !std::filesystem::exists(place) || std::filesystem::is_empty(place);
    }
    /// The server answers this path, but never to the end.
    void stall(const QString &path, qint64 announced)
    {
        Answer answer;
        answer.body = "so";
        answer.announced = announced;
        answer.manner = Answer::Manner::Stall;
        m_server.answer(path, answer);
    }

    const TempDir m_cache;
    const TestAuthority::Trust m_trust{TestAuthority::shared()};
    TestServer m_server;
    PublishedFeed m_feed{m_server};
    QList<QUrl> m_opened;
    bool m_hasInstaller = true;
};

/// A test of an updater without a window.
class UpdaterCase : public ::testing::Test, protected UpdaterFixture
{
protected:
    /// An updater that asks the user about version 2.0.
    std::unique_ptr<Updater> offering()
    {
        m_feed.add(m_next);
        auto updater = makeUpdater();
        updater->checkForUpdates();
        EXPECT_TRUE(reaches(*updater, Updater::Stage::Available));
        return updater;
    }
    void expectFailure(Updater &updater, UpdateError::Case which, const QString &detail = {})
    {
        EXPECT_TRUE(reaches(updater, Updater::Stage::Failed));
        EXPECT_EQ(updater.errorText(), UpdateError(which, detail).description());
        EXPECT_TRUE(updater.isWindowWanted());
        EXPECT_TRUE(updater.canCheckForUpdates());
        EXPECT_TRUE(nothingIsLeft());
        EXPECT_TRUE(m_opened.isEmpty());
    }

    /// The version that is published.
    const QString m_next = QStringLiteral("2.0");
};

} // namespace quillmark::test
