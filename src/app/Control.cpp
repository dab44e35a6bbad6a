// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Control.h"

#include <QAccessible>
#include <QKeyEvent>

namespace quillmark {

Control::Control(QQuickItem *parent) : QQuickItem(parent)
{
    setActiveFocusOnTab(true);
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
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
        if (QAccessible::isActive()) {
            QAccessibleEvent event(this, QAccessible::NameChanged);
            QAccessible::updateAccessibility(&event);
        }
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
        changed.checked = m_kind != Day;
        changed.selected = m_kind == Day;
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
        if (!event->isAutoRepeat()) {
            setPressedBy(SpaceKey);
        }
        break;
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

void Control::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Space) {
        QQuickItem::keyReleaseEvent(event);
    } else if (!event->isAutoRepeat() && m_pressedBy == SpaceKey) {
        setPressedBy(Nothing);
        press();
    }
}

void Control::mousePressEvent(QMouseEvent *event)
{
    setPressedBy(Pointer);
    event->accept();
}

void Control::mouseMoveEvent(QMouseEvent *event)
{
    const bool inside = contains(event->position());
    setHovered(inside); // nobody is told of hovering while a button is down
    setPressedBy(inside ? Pointer : Nothing);
}

void Control::mouseReleaseEvent(QMouseEvent *event)
{
    const bool clicks = m_pressedBy == Pointer && contains(event->position());
    setPressedBy(Nothing);
    if (clicks) {
        press();
    }
}

void Control::mouseUngrabEvent()
{
    setPressedBy(Nothing);
}

void Control::hoverEnterEvent(QHoverEvent *event)
{
    QQuickItem::hoverEnterEvent(event);
    setHovered(true);
}

void Control::hoverLeaveEvent(QHoverEvent *event)
{
    QQuickItem::hoverLeaveEvent(event);
    setHovered(false);
}

void Control::focusOutEvent(QFocusEvent *event)
{
    QQuickItem::focusOutEvent(event);
    if (m_pressedBy == SpaceKey) {
        setPressedBy(Nothing);
    }
}

void Control::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemVisibleHasChanged && !value.boolValue) {
        setHovered(false);
        setPressedBy(Nothing);
    } else if (change == ItemEnabledHasChanged) {
        setPressedBy(Nothing);
        Q_EMIT pointedAtChanged();
    }
}

void Control::setHovered(bool hovered)
{
    if (m_hovered != hovered) {
        m_hovered = hovered;
        Q_EMIT pointedAtChanged();
    }
}

void Control::setPressedBy(PressedBy what)
{
    const bool before = isPressed();
    m_pressedBy = what;
    if (before != isPressed()) {
        Q_EMIT pressedChanged();
    }
}

} // namespace quillmark
