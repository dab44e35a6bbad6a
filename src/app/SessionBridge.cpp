// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/SessionBridge.h"

#include "app/FileBrowser.h"
#include "app/FileUrl.h"
#include "base/PathText.h"
#include "manual/ManualEntryError.h"

#include <QMetaEnum>
#include <QPointer>

#include <variant>

namespace quillmark {
namespace {

using Session = IngestViewModel;

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

int count(const std::vector<std::filesystem::path> &files)
{
    return static_cast<int>(files.size());
}

} // namespace

SessionBridge::SessionBridge(QObject *parent) : QObject(parent)
{
    connect(&m_viewModel, &Session::stateChanged, this, &SessionBridge::takeState);
    connect(&m_viewModel, &Session::backupModeChanged, this, &SessionBridge::backupModeChanged);
    connect(&m_viewModel, &Session::recursiveChanged, this, &SessionBridge::recursiveChanged);
}

void SessionBridge::takeState()
{
    if (const IngestPlan *current = plan()) {
        m_payloadRows.setRows(current->detection.payload.inspectorRows());
    }
    Q_EMIT stateChanged();
    Q_EMIT writingChanged();
}

SessionBridge::Screen SessionBridge::screen() const
{
    static_assert(std::variant_size_v<Session::State> == static_cast<int>(Screen::Error) + 1);
    return static_cast<Screen>(m_viewModel.state().index());
}

QString SessionBridge::screenName() const
{
    return QLatin1String(QMetaEnum::fromType<Screen>().valueToKey(static_cast<int>(screen())));
}

const IngestPlan *SessionBridge::plan() const
{
    return std::visit(Overloaded{
                          [](const Session::Ready &state) { return &state.plan; },
                          [](const Session::Writing &state) { return &state.plan; },
                          [](const Session::Done &state) { return &state.outcome.plan; },
                          [](const auto &) -> const IngestPlan * { return nullptr; },
                      },
                      m_viewModel.state());
}

const std::filesystem::path *SessionBridge::folderPath() const
{
    if (const IngestPlan *current = plan()) {
        return &current->folder;
    }
    return std::visit(Overloaded{
                          [](const Session::Scanning &state) { return &state.folder; },
                          [](const Session::DetectionFailed &state) { return &state.folder; },
                          [](const Session::ManualEntry &state) { return &state.folder; },
                          [](const auto &) -> const std::filesystem::path * { return nullptr; },
                      },
                      m_viewModel.state());
}

QString SessionBridge::folderName() const
{
    const auto *path = folderPath();
    return path ? fileNameText(*path).toUpper() : QString();
}

QUrl SessionBridge::folder() const
{
    const auto *path = folderPath();
    return path ? fileUrlFromPath(*path) : QUrl();
}

QUrl SessionBridge::slateImage() const
{
    const auto *manual = std::get_if<Session::ManualEntry>(&m_viewModel.state());
    return manual && manual->slateImage ? fileUrlFromPath(*manual->slateImage) : QUrl();
}

QString SessionBridge::slateName() const
{
    const IngestPlan *current = plan();
    return current ? fileNameText(current->detection.file) : QString();
}

int SessionBridge::imageCount() const
{
    const IngestPlan *current = plan();
    return current ? count(current->rollFiles) : 0;
}

QString SessionBridge::plannedMode() const
{
    const IngestPlan *current = plan();
    return current ? rawValue(current->backupMode) : QString();
}

double SessionBridge::triedCount() const
{
    const auto *failed = std::get_if<Session::DetectionFailed>(&m_viewModel.state());
    return failed ? static_cast<double>(failed->triedCount) : 0;
}

int SessionBridge::mutatedCount() const
{
    const auto *done = std::get_if<Session::Done>(&m_viewModel.state());
    return done ? count(done->outcome.mutated) : 0;
}

int SessionBridge::backupCount() const
{
    const auto *done = std::get_if<Session::Done>(&m_viewModel.state());
    return done ? count(done->outcome.backups) : 0;
}

QString SessionBridge::errorText() const
{
    const auto *error = std::get_if<Session::Error>(&m_viewModel.state());
    return error ? error->text : QString();
}

QString SessionBridge::backupMode() const
{
    return rawValue(m_viewModel.backupMode());
}

void SessionBridge::setBackupMode(const QString &rawMode)
{
    if (const auto mode = backupModeFromRawValue(rawMode)) {
        m_viewModel.setBackupMode(*mode);
    }
}

// The tasks below run on by themselves: nobody waits for them, and they never fail.

void SessionBridge::openFolder(const QUrl &folder)
{
    if (const auto path = pathFromFileUrl(folder)) {
        m_viewModel.openFolder(*path);
    }
}

void SessionBridge::retryWithSlate(const QUrl &image)
{
    if (const auto path = pathFromFileUrl(image)) {
        m_viewModel.retryWithSlate(*path);
    }
}

void SessionBridge::enterManually()
{
    m_viewModel.enterManually(std::nullopt);
}

void SessionBridge::submitManual(const ManualEntryDraft *draft)
{
    if (!draft) {
        return;
    }
    try {
        keepTrackOf(m_viewModel.submitManual(draft->toPayload(ownGeneratorVersion.toString())));
    } catch (const ManualEntryError &) {
        // The form shows already what is missing: it cannot be submitted in that state.
        return;
    }
}

void SessionBridge::runIngest()
{
    keepTrackOf(m_viewModel.runIngest());
}

bool SessionBridge::isWriting() const
{
    return m_runs > 0 || std::holds_alternative<Session::Writing>(m_viewModel.state());
}

QCoro::Task<> SessionBridge::keepTrackOf(QCoro::Task<> run)
{
    const QPointer<SessionBridge> alive(this);
    if (m_runs++ == 0) {
        Q_EMIT writingChanged();
    }
    co_await run;
    if (alive && --m_runs == 0) {
        Q_EMIT writingChanged();
    }
}

void SessionBridge::reset()
{
    m_viewModel.setState(Session::Idle{});
}

void SessionBridge::revealFolder()
{
    showInFileBrowser(folder());
}

} // namespace quillmark
