// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleField.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickWindow>

namespace quillmark {

// TextInput has no public class: everything is asked for by the names that QML knows.

AccessibleField::AccessibleField(QQuickItem *textInput) : AccessibleItem(textInput) {}

void *AccessibleField::interface_cast(QAccessible::InterfaceType type)
{
    switch (type) {
    case QAccessible::TextInterface:
        return static_cast<QAccessibleTextInterface *>(this);
    case QAccessible::EditableTextInterface:
        return static_cast<QAccessibleEditableTextInterface *>(this);
    default:
        return AccessibleItem::interface_cast(type);
    }
}

QString AccessibleField::content() const
{
    return item()->property("text").toString();
}

QString AccessibleField::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return QQmlProperty::read(item(), QStringLiteral("Accessible.name"), qmlContext(item()))
            .toString();
    case QAccessible::Value:
        return content();
    default:
        return {};
    }
}

QAccessible::State AccessibleField::state() const
{
    QAccessible::State state = AccessibleItem::state();
    state.editable = item()->isEnabled();
    state.selectableText = true;
    return state;
}

int AccessibleField::characterCount() const
{
    return static_cast<int>(content().size());
}

QString AccessibleField::text(int start, int end) const
{
    return content().mid(start, end - start);
}

int AccessibleField::cursorPosition() const
{
    return item()->property("cursorPosition").toInt();
}

void AccessibleField::setCursorPosition(int position)
{
    item()->setProperty("cursorPosition", qBound(0, position, characterCount()));
}

QRect AccessibleField::characterRect(int offset) const
{
    if (!window()) {
        return {}; // a screen that is leaving
    }
    QRectF rect;
    QMetaObject::invokeMethod(item(), "positionToRectangle", Q_RETURN_ARG(QRectF, rect),
                              Q_ARG(int, offset));
    QRectF next = rect;
    QMetaObject::invokeMethod(item(), "positionToRectangle", Q_RETURN_ARG(QRectF, next),
                              Q_ARG(int, offset + 1));
    rect.setWidth(qMax(1.0, next.x() - rect.x()));
    const QRect inWindow = item()->mapRectToScene(rect).toRect();
    return {window()->mapToGlobal(inWindow.topLeft()), inWindow.size()};
}

int AccessibleField::offsetAtPoint(const QPoint &point) const
{
    for (int offset = 0; offset < characterCount(); ++offset) {
        if (characterRect(offset).contains(point)) {
            return offset;
        }
    }
    return -1;
}

QString AccessibleField::attributes(int /*offset*/, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void AccessibleField::scrollToSubstring(int start, int /*end*/)
{
    setCursorPosition(start); // the field shows its cursor
}

int AccessibleField::selectionCount() const
{
    return item()->property("selectedText").toString().isEmpty() ? 0 : 1;
}

void AccessibleField::selection(int index, int *start, int *end) const
{
    const bool selected = index == 0 && selectionCount() > 0;
    *start = selected ? item()->property("selectionStart").toInt() : 0;
    *end = selected ? item()->property("selectionEnd").toInt() : 0;
}

void AccessibleField::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void AccessibleField::removeSelection(int /*index*/)
{
    QMetaObject::invokeMethod(item(), "deselect");
}

void AccessibleField::setSelection(int /*index*/, int start, int end)
{
    QMetaObject::invokeMethod(item(), "select", Q_ARG(int, start), Q_ARG(int, end));
}

void AccessibleField::deleteText(int start, int end)
{
    replaceText(start, end, QString());
}

void AccessibleField::insertText(int offset, const QString &text)
{
    replaceText(offset, offset, text);
}

void AccessibleField::replaceText(int start, int end, const QString &text)
{
    if (!item()->isEnabled()) {
        return;
    }
    QString changed = content();
    const int from = qBound(0, start, characterCount());
    const int to = qBound(from, end, characterCount());
    changed.replace(from, to - from, text);
    item()->setProperty("text", changed);
    setCursorPosition(from + static_cast<int>(text.size()));
}

} // namespace quillmark
