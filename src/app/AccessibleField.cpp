// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleField.h"

namespace quillmark {

void *AccessibleField::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::EditableTextInterface
               ? static_cast<QAccessibleEditableTextInterface *>(this)
               : AccessibleText::interface_cast(type);
}

QString AccessibleField::text(QAccessible::Text kind) const
{
    switch (kind) {
    case QAccessible::Name:
        return attached(QStringLiteral("name")).toString();
    case QAccessible::Value:
        return content();
    default:
        return AccessibleText::text(kind);
    }
}

QAccessible::State AccessibleField::state() const
{
    QAccessible::State state = AccessibleText::state();
    state.editable = item()->isEnabled();
    return state;
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
