// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Keyboard.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace quillmark {
namespace {

bool isWork(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_CapsLock:
        return false;
    default:
        return !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    }
}

} // namespace

Keyboard::Keyboard(QObject *parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool Keyboard::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (isWork(static_cast<const QKeyEvent &>(*event))) {
            setInUse(true);
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        setInUse(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void Keyboard::setInUse(bool inUse)
{
    if (m_inUse != inUse) {
        m_inUse = inUse;
        Q_EMIT inUseChanged();
    }
}

} // namespace quillmark
