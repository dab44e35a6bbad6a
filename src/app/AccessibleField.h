// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AccessibleText.h"

#include <QAccessibleEditableTextInterface>

namespace quillmark {

/// A line of text to type into (a TextInput), as assistive technology sees it: what it says
/// can be read and changed. Its name is that given with Accessible.name.
class AccessibleField : public AccessibleText, public QAccessibleEditableTextInterface
{
public:
    explicit AccessibleField(QQuickItem *textInput) : AccessibleText(textInput) {}

    void *interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::Role role() const override { return QAccessible::EditableText; }
    QString text(QAccessible::Text kind) const override;
    using AccessibleText::text;
    QAccessible::State state() const override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;
};

} // namespace quillmark
