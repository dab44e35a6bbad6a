// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleText.h"

#include <QQuickWindow>

namespace quillmark {

// TextInput and TextEdit have no public classes: everything is asked for by the names that
// QML knows, which are the same for both.

AccessibleText::AccessibleText(QQuickItem *text)
    : AccessibleItem(text), m_selection([this] { announceSelection(); })
{
    QObject::connect(text, SIGNAL(selectedTextChanged()), &m_selection, SLOT(tell()));
}

void AccessibleText::announceSelection() const
{
    int start = 0;
    int end = 0;
    selection(0, &start, &end);
    announce(QAccessibleTextSelectionEvent(object(), start, end));
}

void *AccessibleText::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                              : AccessibleItem::interface_cast(type);
}

QString AccessibleText::content() const
{
    return item()->property("text").toString();
}

QAccessible::State AccessibleText::state() const
{
    QAccessible::State state = AccessibleItem::state();
    state.selectableText = true;
    return state;
}

int AccessibleText::characterCount() const
{
    return static_cast<int>(content().size());
}

QString AccessibleText::text(int start, int end) const
{
    return content().mid(start, end - start);
}

int AccessibleText::cursorPosition() const
{
    return item()->property("cursorPosition").toInt();
}

void AccessibleText::setCursorPosition(int position)
{
    item()->setProperty("cursorPosition", qBound(0, position, characterCount()));
}

QRect AccessibleText::characterRect(int offset) const
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

int AccessibleText::offsetAtPoint(const QPoint &point) const
{
    for (int offset = 0; offset < characterCount(); ++offset) {
        if (characterRect(offset).contains(point)) {
            return offset;
        }
    }
    return -1;
}

QString AccessibleText::attributes(int /*offset*/, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void AccessibleText::scrollToSubstring(int start, int /*end*/)
{
    setCursorPosition(start); // the field shows its cursor
}

int AccessibleText::selectionCount() const
{
    return item()->property("selectedText").toString().isEmpty() ? 0 : 1;
}

void AccessibleText::selection(int index, int *start, int *end) const
{
    const bool selected = index == 0 && selectionCount() > 0;
    *start = selected ? item()->property("selectionStart").toInt() : 0;
    *end = selected ? item()->property("selectionEnd").toInt() : 0;
}

void AccessibleText::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void AccessibleText::removeSelection(int /*index*/)
{
    QMetaObject::invokeMethod(item(), "deselect");
}

void AccessibleText::setSelection(int /*index*/, int start, int end)
{
    QMetaObject::invokeMethod(item(), "select", Q_ARG(int, start), Q_ARG(int, end));
}

QString AccessibleMessage::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? content() : AccessibleItem::text(kind);
}

QAccessible::State AccessibleMessage::state() const
{
    QAccessible::State state = AccessibleText::state();
    state.readOnly = true;
    state.multiLine = true;
    return state;
}

int AccessibleMessage::offsetAtPoint(const QPoint &point) const
{
    if (!window()) {
        return -1; // a screen that is leaving
    }
    // Asked of the text, since a message may be too long for looking at each character.
    const QPointF place = item()->mapFromScene(window()->mapFromGlobal(point));
    int next = 0;
    QMetaObject::invokeMethod(item(), "positionAt", Q_RETURN_ARG(int, next),
                              Q_ARG(qreal, place.x()), Q_ARG(qreal, place.y()));
    // The nearest place for a cursor is before or behind the character.
    for (const int offset : {next - 1, next}) {
        if (offset >= 0 && offset < characterCount() && characterRect(offset).contains(point)) {
            return offset;
        }
    }
    return -1;
}

} // namespace quillmark
