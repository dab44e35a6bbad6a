// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/FeedCheck.h"
#include "app/updates/NotesModel.h"
#include "app/updates/PackageDownload.h"
#include "app/updates/UpdateConfiguration.h"

#include <QObject>
#include <QString>
#include <QTimer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;

namespace quillmark {

/// What an updater finds around it, and how patient it is.
struct UpdaterSurroundings {
    QString currentVersion;
    SystemFacts system;
    /// Hands a file to the program that opens it; false where there is none.
    std::function<bool(const QUrl &)> openPackage;
    /// How long a check that is due waits for the program to have started.
    std::chrono::milliseconds startDelay = std::chrono::seconds(10);
    FetchLimits feed{.bytes = largestAppcast,
                     .window = std::chrono::seconds(15),
                     .windowBytes = 1,
                     .whole = std::chrono::seconds(45)};
    FetchLimits package{.bytes = largestPackage,
                        .window = std::chrono::seconds(30),
                        .windowBytes = qint64{16} * 1024,
                        .whole = std::chrono::hours(6)};
};

/// Looks for new versions of the program when it is asked to, and on schedule; fetches the one
/// that the user wants, and hands it to the desktop's installer. Installs nothing itself.
///
/// Its windows follow the stage. A scheduled check has none until there is a new version that
/// the user has not skipped; what fails in it is tried again when the next one is due. The main
/// thread; the network is not touched before the first check.
class Updater : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has one.")
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)
    Q_PROPERTY(Stage stage READ stage NOTIFY stageChanged)
    Q_PROPERTY(bool windowWanted READ isWindowWanted NOTIFY stageChanged)
    Q_PROPERTY(bool userInitiated READ isUserInitiated NOTIFY stageChanged)
    Q_PROPERTY(QString currentVersion READ currentVersion CONSTANT)
    Q_PROPERTY(QString newVersion READ newVersion NOTIFY stageChanged)
    Q_PROPERTY(QString packageFile READ packageFile NOTIFY stageChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY stageChanged)
    Q_PROPERTY(quillmark::NotesModel *notes READ notes CONSTANT)
    Q_PROPERTY(double received READ received NOTIFY progressChanged)
    Q_PROPERTY(double expected READ expected NOTIFY progressChanged)

public:
    enum class Stage {
        Idle,
        Checking,    ///< the feed is fetched
        UpToDate,    ///< there is no newer version
        Available,   ///< there is one, and the user is to decide
        Downloading, ///< it is fetched
        Verifying,   ///< its signature is computed
        HandedOver,  ///< the installer has it
        Failed,      ///< what was going on could not be done
    };
    Q_ENUM(Stage)

    /// Without a configuration it never does anything.
    Updater(std::optional<UpdateConfiguration> configuration, UpdaterSurroundings surroundings,
            QObject *parent = nullptr);
    ~Updater() override;
    Q_DISABLE_COPY_MOVE(Updater)

    /// From now on it can check, and does so on schedule. Does nothing without a configuration.
    void start();

    /// False until it was started, and while it has something in hand; an offer for which nobody
    /// asked is nothing that keeps the user from asking.
    bool canCheckForUpdates() const { return m_canCheck; }
    Stage stage() const { return m_stage; }
    /// Whether it waits for a server.
    bool isFetching() const { return m_stage == Stage::Checking || m_stage == Stage::Downloading; }
    /// Whether there is something to be shown.
    bool isWindowWanted() const;
    /// Whether the user asked for what goes on, and not the schedule.
    bool isUserInitiated() const { return m_userInitiated; }

    QString currentVersion() const { return m_surroundings.currentVersion; }
    /// Available to HandedOver: what people call the new version.
    QString newVersion() const;
    /// HandedOver: the path of the package.
    QString packageFile() const { return m_packageFile; }
    /// Failed: why.
    QString errorText() const { return m_errorText; }
    /// Available: the new version's notes, and the page with more of them if there is one.
    NotesModel *notes() { return &m_notes; }
    /// Downloading: how many bytes have come, of how many; -1 where that is not known.
    double received() const { return static_cast<double>(m_received); }
    double expected() const { return static_cast<double>(m_expected); }

    // Each does nothing at any other stage than the one for which it is meant.

    /// Looks for updates because the user wants it. Shows a skipped version too.
    Q_INVOKABLE void checkForUpdates();
    /// Available: fetches the new version.
    Q_INVOKABLE void install();
    /// Available: never again tells of this version on schedule.
    Q_INVOKABLE void skip();
    /// Ends whatever is shown, and gives up what is under way.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void canCheckForUpdatesChanged();
    void stageChanged();
    void progressChanged();

private:
    void check(bool userInitiated);
    void takeAnswer(const FeedAnswer &answer);
    void takeCheckError(const UpdateError &error);
    void handOver(const QString &file);
    void fail(const UpdateError &error);
    void setStage(Stage stage);
    void endWork();
    void noteCheck();
    void noteFeed(const QDateTime &date);
    std::optional<QDateTime> newestSeen() const;
    void schedule();
    void checkIfDue();
    std::chrono::milliseconds timeUntilDue() const;
    QNetworkAccessManager &network();

    const std::optional<UpdateConfiguration> m_configuration;
    const UpdaterSurroundings m_surroundings;
    QTimer m_schedule;
    // Made when it is first needed: an idle program pays for none of it.
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<FeedCheck> m_check;
    std::unique_ptr<PackageDownload> m_download;
    NotesModel m_notes;
    std::optional<AppcastItem> m_item;
    std::optional<QDateTime> m_lastCheck;  ///< of this process
    std::optional<QDateTime> m_newestFeed; ///< that this process has seen
    QString m_packageFile;
    QString m_errorText;
    Stage m_stage = Stage::Idle;
    bool m_started = false;
    bool m_canCheck = false;
    bool m_userInitiated = false;
    qint64 m_received = 0;
    qint64 m_expected = -1;
};

} // namespace quillmark
