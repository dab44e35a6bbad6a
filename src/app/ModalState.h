// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

class QEvent;

namespace quillmark {

/// Whether a dialog of the program, like its own file chooser, is modal to a window: the
/// window then gets no input, but assistive technology reaches what is in it all the same.
class ModalState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QWindow *window READ window WRITE setWindow NOTIFY windowChanged)
    Q_PROPERTY(bool blocked READ isBlocked NOTIFY blockedChanged)

public:
    using QObject::QObject;

    QWindow *window() const { return m_window; }
    /// To be set before a dialog is shown.
    void setWindow(QWindow *window);
    bool isBlocked() const { return m_blocked; }

    /// Sees every event of the window.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void windowChanged();
    void blockedChanged();

private:
    void setBlocked(bool blocked);

    QPointer<QWindow> m_window;
    bool m_blocked = false;
};

} // namespace quillmark
