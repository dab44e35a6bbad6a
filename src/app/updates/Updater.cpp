// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/Updater.h"

#include "app/updates/UpdateMemory.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkProxy>

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

using namespace std::chrono_literals;

/// The longest that the schedule sleeps at once: timers stand still while the machine does.
constexpr std::chrono::milliseconds longestSleep = 1h;

/// Whoever is told of an end may be in the middle of a signal of what has ended. What is not
/// deleted later goes with its parent.
template <typename Work>
void discard(std::unique_ptr<Work> &work)
{
    if (work) {
        work->disconnect();
        work.release()->deleteLater();
    }
}

} // namespace

Updater::Updater(std::optional<UpdateConfiguration> configuration, UpdaterSurroundings surroundings,
                 QObject *parent)
    : QObject(parent),
      m_configuration(std::move(configuration)),
      m_surroundings(std::move(surroundings))
{
    m_schedule.setSingleShot(true);
    connect(&m_schedule, &QTimer::timeout, this, &Updater::checkIfDue);
    // The process may end without destroying anything, and half a package is not to stay.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] {
        m_check.reset();
        m_download.reset();
    });
}

Updater::~Updater() = default;

void Updater::start()
{
    if (m_started || !m_configuration) {
        return;
    }
    m_started = true;
    setStage(Stage::Idle);
}

bool Updater::isWindowWanted() const
{
    return m_stage != Stage::Idle && (m_userInitiated || m_stage == Stage::Available);
}

QString Updater::newVersion() const
{
    return m_item ? m_item->shortVersion : QString();
}

void Updater::checkForUpdates()
{
    if (m_canCheck) {
        check(true);
    }
}

void Updater::check(bool userInitiated)
{
    endWork();
    PackageDownload::removeLeftovers(); // there may be no other download for a long time
    m_item.reset();                     // of an offer that nobody has answered
    m_userInitiated = userInitiated;
    FeedQuestion question{.configuration = *m_configuration,
                          .currentVersion = m_surroundings.currentVersion,
                          .system = m_surroundings.system,
                          .newestSeen = newestSeen()};
    m_check =
        std::make_unique<FeedCheck>(network(), std::move(question), m_surroundings.feed, this);
    connect(m_check.get(), &FeedCheck::answered, this, &Updater::takeAnswer);
    connect(m_check.get(), &FeedCheck::failed, this, &Updater::takeCheckError);
    m_check->start();
    setStage(Stage::Checking);
}

void Updater::takeAnswer(const FeedAnswer &answer)
{
    discard(m_check);
    noteCheck();
    noteFeed(answer.feedDate);
    if (!answer.update) {
        setStage(m_userInitiated ? Stage::UpToDate : Stage::Idle);
        return;
    }
    if (!m_userInitiated && answer.update->version == UpdateMemory::skippedVersion()) {
        setStage(Stage::Idle);
        return;
    }
    m_item = answer.update;
    std::vector<NoteLine> lines = readReleaseNotes(m_item->notes, m_item->notesFormat);
    if (auto page = noteLink(m_item->notesAddress)) {
        lines.push_back(std::move(*page));
    }
    m_notes.setLines(std::move(lines));
    setStage(Stage::Available);
}

void Updater::takeCheckError(const UpdateError &error)
{
    discard(m_check);
    noteCheck();
    if (m_userInitiated) {
        fail(error);
    } else {
        setStage(Stage::Idle);
    }
}

void Updater::install()
{
    if (m_stage != Stage::Available) {
        return;
    }
    m_userInitiated = true;
    m_received = 0;
    m_expected = m_item->packageBytes > 0 ? m_item->packageBytes : -1;
    m_download = std::make_unique<PackageDownload>(network(), *m_item, m_configuration->publicKey,
                                                   m_surroundings.package, this);
    connect(m_download.get(), &PackageDownload::progressed, this,
            [this](qint64 received, qint64 expected) {
                m_received = received;
                m_expected = expected;
                Q_EMIT progressChanged();
            });
    connect(m_download.get(), &PackageDownload::fetched, this,
            [this] { setStage(Stage::Verifying); });
    connect(m_download.get(), &PackageDownload::verified, this, &Updater::handOver);
    connect(m_download.get(), &PackageDownload::failed, this, &Updater::fail);
    m_download->start();
    Q_EMIT progressChanged();
    setStage(Stage::Downloading);
}

void Updater::handOver(const QString &file)
{
    if (!m_surroundings.openPackage(QUrl::fromLocalFile(file))) {
        fail(UpdateError(UpdateError::Case::noInstaller));
        return;
    }
    // The installer reads it when it gets round to it.
    m_download->keep();
    discard(m_download);
    m_packageFile = file;
    setStage(Stage::HandedOver);
}

void Updater::skip()
{
    if (m_stage == Stage::Available) {
        UpdateMemory::setSkippedVersion(m_item->version);
        dismiss();
    }
}

void Updater::dismiss()
{
    endWork();
    setStage(Stage::Idle);
}

void Updater::fail(const UpdateError &error)
{
    endWork();
    m_errorText = error.description();
    setStage(Stage::Failed);
}

void Updater::endWork()
{
    discard(m_check);
    if (m_download) {
        m_download->giveUp();
    }
    discard(m_download);
}

void Updater::setStage(Stage stage)
{
    m_stage = stage;
    if (m_stage != Stage::Failed) {
        m_errorText.clear();
    }
    if (m_stage != Stage::HandedOver) {
        m_packageFile.clear();
    }
    if (m_stage == Stage::Idle) {
        m_userInitiated = false;
        m_item.reset();
        schedule();
    } else {
        m_schedule.stop();
    }
    // An offer of the schedule may be waiting for its time: who asks meanwhile is answered.
    const bool isUnaskedOffer = m_stage == Stage::Available && !m_userInitiated;
    const bool canCheck =
        m_started && (m_stage == Stage::Idle || m_stage == Stage::UpToDate ||
                      m_stage == Stage::HandedOver || m_stage == Stage::Failed || isUnaskedOffer);
    const bool changed = std::exchange(m_canCheck, canCheck) != canCheck;
    Q_EMIT stageChanged();
    if (changed) {
        Q_EMIT canCheckForUpdatesChanged();
    }
}

void Updater::noteCheck()
{
    // Here too: where settings cannot be written, the server is not to be asked without end.
    m_lastCheck = QDateTime::currentDateTimeUtc();
    UpdateMemory::setLastCheck(*m_lastCheck);
}

void Updater::noteFeed(const QDateTime &date)
{
    // One that is dated in the future by mistake is not to shut out those that correct it.
    const QDateTime seen = std::min(date, QDateTime::currentDateTimeUtc());
    // Here too: an old feed is refused where settings cannot be written as well.
    m_newestFeed = m_newestFeed ? std::max(*m_newestFeed, seen) : seen;
    UpdateMemory::noteFeed(m_configuration->feed, seen);
}

std::optional<QDateTime> Updater::newestSeen() const
{
    return std::max(m_newestFeed, UpdateMemory::newestFeed(m_configuration->feed));
}

std::chrono::milliseconds Updater::timeUntilDue() const
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto last = m_lastCheck ? m_lastCheck : UpdateMemory::lastCheck();
    // A check in the future was made by a clock that was wrong then, or is wrong now.
    if (!last || *last > now) {
        return 0ms;
    }
    const std::chrono::milliseconds since(last->msecsTo(now));
    return std::max<std::chrono::milliseconds>(m_configuration->interval - since, 0ms);
}

void Updater::schedule()
{
    if (m_started && m_configuration->automatic) {
        m_schedule.start(std::clamp(timeUntilDue(), m_surroundings.startDelay,
                                    std::max(longestSleep, m_surroundings.startDelay)));
    }
}

void Updater::checkIfDue()
{
    if (timeUntilDue() > 0ms) {
        schedule();
    } else {
        check(false);
    }
}

QNetworkAccessManager &Updater::network()
{
    if (!m_network) {
        m_network = std::make_unique<QNetworkAccessManager>();
        if (m_configuration->feed.scheme() == QLatin1String("http")) {
            m_network->setProxy(QNetworkProxy::NoProxy); // a proxy's loopback is not ours
        }
    }
    return *m_network;
}

} // namespace quillmark
