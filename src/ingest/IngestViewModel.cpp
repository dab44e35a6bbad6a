// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/IngestViewModel.h"

#include "base/Background.h"
#include "base/Described.h"
#include "base/PathText.h"
#include "detection/SlateDetectionError.h"
#include "embedding/Exiftool.h"
#include "ingest/FileError.h"
#include "ingest/Ingestor.h"
#include "manual/LastUsedPayloadStore.h"

#include <QPointer>

#include <utility>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

using Files = std::vector<fs::path>;

/// A listing passes over what cannot be read, which is right while searching for a slate.
/// Where a person typed a payload for this very folder, its absence must not look like an
/// empty folder. Throws FileError.
Files listExistingFolder(const fs::path &folder, bool recursive)
{
    std::error_code failure;
    const fs::directory_iterator readable(folder, failure);
    if (failure) {
        throw FileError(QStringLiteral("Could not list the folder “%1”").arg(pathText(folder)),
                        folder, failure);
    }
    return SlateDetector::enumerateImages(folder, recursive);
}

} // namespace

IngestViewModel::IngestViewModel(QObject *parent) : QObject(parent) {}

void IngestViewModel::setState(State state)
{
    Q_EMIT stateWillChange();
    m_state = std::move(state);
    Q_EMIT stateChanged();
}

void IngestViewModel::setBackupMode(BackupMode mode)
{
    if (mode == m_backupMode) {
        return;
    }
    Q_EMIT backupModeWillChange();
    m_backupMode = mode;
    Q_EMIT backupModeChanged();
}

void IngestViewModel::setRecursive(bool recursive)
{
    if (recursive == m_recursive) {
        return;
    }
    Q_EMIT recursiveWillChange();
    m_recursive = recursive;
    Q_EMIT recursiveChanged();
}

void IngestViewModel::openFolder(const fs::path &folder)
{
    scan(folder);
}

// In the coroutines below everything after a co_await runs later, and a session that is
// gone by then has nothing to tell: `alive` is asked before `this` is touched again.

QCoro::Task<> IngestViewModel::scan(fs::path folder)
{
    const QPointer<IngestViewModel> alive(this);
    setState(Scanning{folder});
    const bool recursive = m_recursive;
    const BackupMode backupMode = m_backupMode;

    State next;
    try {
        SlateDetection detection = co_await SlateDetector::detectInFolder(folder, recursive);
        Files rollFiles =
            co_await runInBackground(&SlateDetector::enumerateImages, folder, recursive);
        next = Ready{{folder, std::move(detection), std::move(rollFiles), backupMode}};
    } catch (const SlateDetectionError &error) {
        if (error.which() == SlateDetectionError::Case::noSlateFound) {
            next = DetectionFailed{folder, error.triedCount()};
        } else {
            next = Error{error.description()};
        }
    } catch (...) {
        next = Error{describe(std::current_exception())};
    }
    if (alive) {
        setState(std::move(next));
    }
}

QCoro::Task<> IngestViewModel::retryWithSlate(fs::path image)
{
    const auto *const failed = std::get_if<DetectionFailed>(&m_state);
    if (failed == nullptr) {
        co_return;
    }
    const QPointer<IngestViewModel> alive(this);
    const fs::path folder = failed->folder;
    setState(Scanning{folder});

    std::optional<SlateDetection> detection;
    try {
        detection = co_await SlateDetector::detect(image);
    } catch (...) { // NOLINT(bugprone-empty-catch)
        // A picked frame that cannot be read is a frame without a slate.
    }
    if (!alive) {
        co_return;
    }
    if (!detection) {
        setState(ManualEntry{folder, image});
        co_return;
    }
    const BackupMode backupMode = m_backupMode;
    Files rollFiles;
    try {
        rollFiles = co_await runInBackground(&SlateDetector::enumerateImages, folder, m_recursive);
    } catch (...) { // NOLINT(bugprone-empty-catch)
        // The slate is what was asked for; a plan without files can still be shown.
    }
    if (alive) {
        setState(Ready{{folder, *std::move(detection), std::move(rollFiles), backupMode}});
    }
}

void IngestViewModel::enterManually(std::optional<fs::path> slateImage)
{
    if (const auto *const failed = std::get_if<DetectionFailed>(&m_state)) {
        setState(ManualEntry{failed->folder, std::move(slateImage)});
    }
}

QCoro::Task<> IngestViewModel::submitManual(SlatePayload payload)
{
    if (!std::holds_alternative<ManualEntry>(m_state)) {
        co_return;
    }
    const QPointer<IngestViewModel> alive(this);
    const ManualEntry entry = std::get<ManualEntry>(m_state);
    const fs::path folder = entry.folder;
    const SlateDetection detection{entry.slateImage.value_or(folder), payload, QString()};

    Files rollFiles;
    QString failure;
    try {
        rollFiles = co_await runInBackground(&listExistingFolder, folder, m_recursive);
    } catch (...) {
        failure = describe(std::current_exception());
    }
    // While the folder was listed the user may have left the form, or submitted it twice.
    const auto *const current = alive ? std::get_if<ManualEntry>(&m_state) : nullptr;
    if (current == nullptr || *current != entry) {
        co_return;
    }
    if (!failure.isEmpty()) {
        setState(Error{failure});
        co_return;
    }
    LastUsedPayloadStore::save(payload);
    // Named, because GCC 12 destroys an aggregate twice that is made inside a co_await.
    IngestPlan plan{folder, detection, std::move(rollFiles), m_backupMode};
    co_await run(std::move(plan));
}

QCoro::Task<> IngestViewModel::runIngest()
{
    const auto *const ready = std::get_if<Ready>(&m_state);
    if (ready == nullptr) {
        co_return;
    }
    IngestPlan plan = ready->plan;
    plan.backupMode = m_backupMode; // it may have changed since the scan
    co_await run(std::move(plan));
}

QCoro::Task<> IngestViewModel::run(IngestPlan plan)
{
    const QPointer<IngestViewModel> alive(this);
    setState(Writing{plan});

    State next;
    try {
        PreparedFiles prepared = co_await runInBackground(&Ingestor::prepareFiles, plan.rollFiles,
                                                          plan.folder, plan.backupMode);
        co_await Exiftool::embed(prepared.mutated, plan.detection.payload,
                                 ownGeneratorVersion.toString());
        next = Done{{std::move(plan), std::move(prepared.mutated), std::move(prepared.backups)}};
    } catch (...) {
        next = Error{describe(std::current_exception())};
    }
    if (alive) {
        setState(std::move(next));
    }
}

} // namespace quillmark
