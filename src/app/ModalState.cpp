// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/ModalState.h"

#include <QEvent>

namespace quillmark {

void ModalState::setWindow(QWindow *window)
{
    if (m_window == window) {
        return;
    }
    if (m_window) {
        m_window->removeEventFilter(this);
    }
    m_window = window;
    if (m_window) {
        m_window->installEventFilter(this);
    }
    setBlocked(false);
    Q_EMIT windowChanged();
}

bool ModalState::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked) {
        setBlocked(true);
    } else if (event->type() == QEvent::WindowUnblocked) {
        setBlocked(false);
    }
    return QObject::eventFilter(watched, event);
}

void ModalState::setBlocked(bool blocked)
{
    if (m_blocked != blocked) {
        m_blocked = blocked;
        Q_EMIT blockedChanged();
    }
}

} // namespace quillmark
