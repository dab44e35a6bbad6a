// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ingest/BackupMode.h"
#include "ingest/IngestPlan.h"
#include "payload/SlatePayload.h"

#include <QCoro/QCoroTask>
#include <QObject>
#include <QString>

#include <filesystem>
#include <optional>
#include <variant>

namespace quillmark {

/// The generator version that the program writes into images and typed payloads.
inline constexpr QStringView ownGeneratorVersion = u"quillmark-macos@0.0.0";

/// The session: drives one ingest after another, from a folder to a result. The window
/// observes it and shows the screen of its state.
///
/// It lives on the main thread, and so does every call and every change; the work itself
/// runs in the background. None of its operations fails: what goes wrong becomes a state.
/// Operations that need a certain state do nothing in any other.
class IngestViewModel : public QObject
{
    Q_OBJECT

public:
    /// Nothing under way.
    struct Idle {};
    /// A folder, or one picked frame of it, is being searched for the slate.
    struct Scanning {
        std::filesystem::path folder;
    };
    /// A slate was found, and the plan waits for a word.
    struct Ready {
        IngestPlan plan;
    };
    /// None of the images tried holds a slate.
    struct DetectionFailed {
        std::filesystem::path folder;
        qint64 triedCount = 0;
    };
    /// The payload is to be typed; `slateImage` is the frame picked for reference, if any.
    struct ManualEntry {
        std::filesystem::path folder;
        std::optional<std::filesystem::path> slateImage;

        bool operator==(const ManualEntry &) const = default;
    };
    /// Files are being prepared and tagged.
    struct Writing {
        IngestPlan plan;
    };
    /// The run succeeded.
    struct Done {
        IngestOutcome outcome;
    };
    /// Something failed; the text is shown as it is.
    struct Error {
        QString text;
    };
    using State =
        std::variant<Idle, Scanning, Ready, DetectionFailed, ManualEntry, Writing, Done, Error>;

    explicit IngestViewModel(QObject *parent = nullptr);

    const State &state() const { return m_state; }
    /// Sets the state directly; Idle{} is the reset that screens use.
    void setState(State state);

    /// For the next plan and run; backupOriginals at first, never stored.
    BackupMode backupMode() const { return m_backupMode; }
    void setBackupMode(BackupMode mode);

    /// Whether images are listed in subfolders too; false at first, never stored.
    bool recursive() const { return m_recursive; }
    void setRecursive(bool recursive);

    /// Starts a scan and returns at once.
    void openFolder(const std::filesystem::path &folder);

    /// Looks for the slate in a folder: Scanning, then Ready, DetectionFailed or Error. May be
    /// started in any state; the last to finish sets the final one.
    QCoro::Task<> scan(std::filesystem::path folder);

    /// In DetectionFailed: looks for the slate on one picked frame; then Ready, or
    /// ManualEntry with that frame.
    QCoro::Task<> retryWithSlate(std::filesystem::path image);

    /// In DetectionFailed: goes on to ManualEntry.
    void enterManually(std::optional<std::filesystem::path> slateImage);

    /// In ManualEntry: remembers the payload, then writes it into the folder's images.
    QCoro::Task<> submitManual(SlatePayload payload);

    /// In Ready: carries out the plan with the backup mode of this moment; Writing, then
    /// Done or Error.
    QCoro::Task<> runIngest();

Q_SIGNALS:
    void stateWillChange();
    void stateChanged();
    void backupModeWillChange();
    void backupModeChanged();
    void recursiveWillChange();
    void recursiveChanged();

private:
    QCoro::Task<> run(IngestPlan plan);

    State m_state;
    BackupMode m_backupMode = BackupMode::backupOriginals;
    bool m_recursive = false;
};

} // namespace quillmark
