// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Control.h"

#include <QAccessible>
#include <QKeyEvent>

namespace quillmark {

Control::Control(QQuickItem *parent) : QQuickItem(parent)
{
    setActiveFocusOnTab(true);
}

void Control::setKind(Kind kind)
{
    if (m_kind != kind) {
        m_kind = kind;
        Q_EMIT kindChanged();
    }
}

void Control::setText(const QString &text)
{
    if (m_text != text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}

void Control::setChecked(bool checked)
{
    if (m_checked == checked) {
        return;
    }
    m_checked = checked;
    Q_EMIT checkedChanged();
    if (QAccessible::isActive()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
}

void Control::press()
{
    if (isEnabled() && isVisible()) {
        Q_EMIT clicked();
    }
}

void Control::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat()) {
            press();
        }
        break;
    default:
        QQuickItem::keyPressEvent(event);
    }
}

} // namespace quillmark
