// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleItem.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickWindow>

namespace quillmark {

AccessibleItem::AccessibleItem(QQuickItem *item)
    : QAccessibleObject(item),
      m_enabledChanged(QObject::connect(item, &QQuickItem::enabledChanged, item, [this] {
          QAccessible::State changed;
          changed.disabled = true;
          announce(QAccessibleStateChangeEvent(object(), changed));
      }))
{}

AccessibleItem::~AccessibleItem()
{
    QObject::disconnect(m_enabledChanged);
}

void AccessibleItem::announce(QAccessibleEvent &&event) const
{
    // An item that was asked for while it was still being made has a second interface.
    if (QAccessible::queryAccessibleInterface(object()) == this) {
        QAccessible::updateAccessibility(&event);
    }
}

void *AccessibleItem::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface) {
        return static_cast<QAccessibleActionInterface *>(this);
    }
    return nullptr;
}

QWindow *AccessibleItem::window() const
{
    return item()->window();
}

QRect AccessibleItem::rect() const
{
    if (!window()) {
        return {};
    }
    const QRect inWindow = item()->mapRectToScene(item()->boundingRect()).toRect();
    return {window()->mapToGlobal(inWindow.topLeft()), inWindow.size()};
}

/// The part of the item that is not cut off, in the window's coordinates.
QRectF AccessibleItem::seenRect() const
{
    QRectF seen = item()->mapRectToScene(item()->boundingRect()) &
                  QRectF(QPointF(), QSizeF(item()->window()->size()));
    for (const QQuickItem *above = item()->parentItem(); above; above = above->parentItem()) {
        if (above->clip()) {
            seen &= above->mapRectToScene(above->boundingRect());
        }
    }
    return seen;
}

QAccessible::State AccessibleItem::state() const
{
    const bool shown = item()->isVisible() && window() && window()->isVisible();
    QAccessible::State state;
    state.disabled = !item()->isEnabled();
    state.focusable = item()->isEnabled() && shown;
    state.focused = item()->hasActiveFocus();
    state.invisible = !shown;
    state.offscreen = shown && seenRect().isEmpty();
    return state;
}

QVariant AccessibleItem::attached(const QString &property) const
{
    return QQmlProperty::read(item(), QStringLiteral("Accessible.") + property, qmlContext(item()));
}

QString AccessibleItem::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Description ? attached(QStringLiteral("description")).toString()
                                            : QString();
}

QAccessibleInterface *AccessibleItem::parent() const
{
    for (QQuickItem *above = item()->parentItem(); above; above = above->parentItem()) {
        // None for items that are not in the tree.
        if (auto *found = QAccessible::queryAccessibleInterface(above)) {
            return found;
        }
    }
    return QAccessible::queryAccessibleInterface(window());
}

QAccessibleInterface *AccessibleItem::child(int /*index*/) const
{
    return nullptr;
}

int AccessibleItem::indexOfChild(const QAccessibleInterface * /*child*/) const
{
    return -1;
}

QStringList AccessibleItem::actionNames() const
{
    return {setFocusAction()};
}

void AccessibleItem::doAction(const QString &name)
{
    if (name == setFocusAction() && item()->isEnabled() && item()->isVisible()) {
        item()->forceActiveFocus(Qt::OtherFocusReason);
    }
}

QStringList AccessibleItem::keyBindingsForAction(const QString & /*name*/) const
{
    return {};
}

AccessibleControl::AccessibleControl(Control *control) : AccessibleItem(control) {}

QAccessible::Role AccessibleControl::role() const
{
    switch (control()->kind()) {
    case Control::Button:
        return QAccessible::Button;
    case Control::Switch:
        return QAccessible::CheckBox;
    case Control::Choice:
        return QAccessible::RadioButton;
    case Control::Day:
        return QAccessible::Cell;
    }
    return QAccessible::NoRole;
}

QString AccessibleControl::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? control()->text() : AccessibleItem::text(kind);
}

QAccessible::State AccessibleControl::state() const
{
    QAccessible::State state = AccessibleItem::state();
    switch (control()->kind()) {
    case Control::Button:
        break;
    case Control::Switch:
    case Control::Choice:
        state.checkable = true;
        state.checked = control()->isChecked();
        break;
    case Control::Day:
        state.selectable = control()->isEnabled();
        state.selected = control()->isChecked();
        break;
    }
    return state;
}

QStringList AccessibleControl::actionNames() const
{
    if (state().checkable) {
        return {toggleAction(), pressAction(), setFocusAction()};
    }
    return {pressAction(), setFocusAction()};
}

void AccessibleControl::doAction(const QString &name)
{
    if (name == pressAction() || name == toggleAction()) {
        control()->press();
    } else {
        AccessibleItem::doAction(name);
    }
}

} // namespace quillmark
