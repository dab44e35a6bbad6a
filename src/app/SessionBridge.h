// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/InspectorModel.h"
#include "ingest/IngestViewModel.h"
#include "manual/ManualEntryDraft.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// The session as the window sees it: owns one IngestViewModel, shows its state as
/// properties that hold plain values, and passes on what the user asks for.
///
/// Every property of the state belongs to the screens named with it; on other screens it
/// is empty or zero.
class SessionBridge : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Session)
    Q_PROPERTY(Screen screen READ screen NOTIFY stateChanged)
    Q_PROPERTY(QString screenName READ screenName NOTIFY stateChanged)
    Q_PROPERTY(QString folderName READ folderName NOTIFY stateChanged)
    Q_PROPERTY(QUrl folder READ folder NOTIFY stateChanged)
    Q_PROPERTY(QUrl slateImage READ slateImage NOTIFY stateChanged)
    Q_PROPERTY(quillmark::InspectorModel *payloadRows READ payloadRows CONSTANT)
    Q_PROPERTY(QString slateName READ slateName NOTIFY stateChanged)
    Q_PROPERTY(int imageCount READ imageCount NOTIFY stateChanged)
    Q_PROPERTY(QString plannedMode READ plannedMode NOTIFY stateChanged)
    Q_PROPERTY(double triedCount READ triedCount NOTIFY stateChanged)
    Q_PROPERTY(int mutatedCount READ mutatedCount NOTIFY stateChanged)
    Q_PROPERTY(int backupCount READ backupCount NOTIFY stateChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY stateChanged)
    Q_PROPERTY(QString backupMode READ backupMode WRITE setBackupMode NOTIFY backupModeChanged)
    Q_PROPERTY(bool writing READ isWriting NOTIFY writingChanged)
    Q_PROPERTY(bool recursive READ recursive WRITE setRecursive NOTIFY recursiveChanged)

public:
    /// One for each state of the session, in the order of IngestViewModel::State.
    enum class Screen {
        Idle,
        Scanning,
        Ready,
        DetectionFailed,
        ManualEntry,
        Writing,
        Done,
        Error,
    };
    Q_ENUM(Screen)

    explicit SessionBridge(QObject *parent = nullptr);

    /// The session itself.
    IngestViewModel &viewModel() { return m_viewModel; }

    Screen screen() const;
    /// The screen's name in the enumeration.
    QString screenName() const;

    /// Scanning to Done: the folder's last component in upper case.
    QString folderName() const;
    /// Scanning to Done: the folder.
    QUrl folder() const;
    /// ManualEntry: the frame that was picked; empty where none was.
    QUrl slateImage() const;
    /// The payload of the latest plan.
    InspectorModel *payloadRows() { return &m_payloadRows; }
    /// Ready: the slate frame's file name.
    QString slateName() const;
    /// Ready, Writing, Done: how many images the plan holds.
    int imageCount() const;
    /// Ready, Writing, Done: the raw value of the plan's backup mode.
    QString plannedMode() const;
    /// DetectionFailed: how many images were examined.
    double triedCount() const;
    /// Done: how many files were written.
    int mutatedCount() const;
    /// Done: how many backup copies were made.
    int backupCount() const;
    /// Error: what failed.
    QString errorText() const;

    /// The raw value of the mode for the next run. Writing an unknown one changes nothing.
    QString backupMode() const;
    void setBackupMode(const QString &rawMode);

    /// Whether a run is under way, from its start to its end: the program must not end
    /// meanwhile, whatever state is shown.
    bool isWriting() const;

    bool recursive() const { return m_viewModel.recursive(); }
    void setRecursive(bool recursive) { m_viewModel.setRecursive(recursive); }

    // Each starts its operation and returns at once. URLs that are not files are ignored.
    Q_INVOKABLE void openFolder(const QUrl &folder);
    Q_INVOKABLE void retryWithSlate(const QUrl &image);
    Q_INVOKABLE void enterManually();
    /// Nothing happens while the draft is not valid.
    Q_INVOKABLE void submitManual(const quillmark::ManualEntryDraft *draft);
    Q_INVOKABLE void runIngest();
    Q_INVOKABLE void reset();
    /// Opens the ingested folder in the desktop's file browser.
    Q_INVOKABLE void revealFolder();

Q_SIGNALS:
    void stateChanged();
    void writingChanged();
    void backupModeChanged();
    void recursiveChanged();

private:
    void takeState();
    const IngestPlan *plan() const;
    const std::filesystem::path *folderPath() const;

    QCoro::Task<> keepTrackOf(QCoro::Task<> run);

    int m_runs = 0;
    IngestViewModel m_viewModel;
    InspectorModel m_payloadRows;
};

} // namespace quillmark
