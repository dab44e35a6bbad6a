// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ChooserRequest.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QPointer>
#include <QVariant>
#include <QVariantMap>
#include <QWindow>

class QDBusMessage;

namespace quillmark {

/// The chooser that the desktop offers to every program over the session bus
/// (freedesktop.org's interface org.freedesktop.portal.FileChooser).
///
/// Asks once; exactly one of the signals ends it. Destroyed before, it takes its chooser away.
class PortalChooser : public QObject
{
    Q_OBJECT

public:
    /// @param autoStart whether to start the service for it, or only to use it where it runs
    PortalChooser(ChooserRequest request, bool autoStart, QObject *parent = nullptr);
    ~PortalChooser() override;

    /// Whether there is a bus to ask on.
    static bool canBeAsked();

    /// Asks for the chooser, modal to a window, and returns at once.
    void open(QWindow *parentWindow);

Q_SIGNALS:
    void chosen(const QUrl &location);
    void cancelled();
    /// There is no such chooser, or it broke: the user has not been heard.
    void unavailable();

private:
    enum class Stage { Asking, Open, Over };

    using Answer = void (PortalChooser::*)(const QVariant &);

    void call(const QDBusMessage &message, Answer answer);
    void takeVersion(const QVariant &answer);
    void takeRequest(const QVariant &answer);
    void expectResponseAt(const QString &requestPath);
    Q_SLOT void takeResponse(uint response, const QVariantMap &results);
    QVariantMap options() const;
    QString parentHandle() const;
    void close();
    void fail();

    ChooserRequest m_request;
    bool m_autoStart;
    Stage m_stage = Stage::Asking;
    QPointer<QWindow> m_parentWindow;
    QString m_token;
    QString m_requestPath; ///< where the open chooser is on the bus; empty before
    QDBusServiceWatcher m_service;
};

} // namespace quillmark
