// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AccessibleItem.h"

#include <QAccessibleEditableTextInterface>
#include <QAccessibleTextInterface>

namespace quillmark {

/// A line of text to type into (a TextInput), as assistive technology sees it: what it says
/// can be read and changed. Its name is that given with Accessible.name.
///
/// Offsets count UTF-16 units from 0; texts outside the field's are cut to it.
class AccessibleField : public AccessibleItem,
                        public QAccessibleTextInterface,
                        public QAccessibleEditableTextInterface
{
public:
    explicit AccessibleField(QQuickItem *textInput);

    void *interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::Role role() const override { return QAccessible::EditableText; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;

    int characterCount() const override;
    QString text(int start, int end) const override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    QString attributes(int offset, int *start, int *end) const override;
    void scrollToSubstring(int start, int end) override;

    int selectionCount() const override;
    void selection(int index, int *start, int *end) const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString &text) override;
    void replaceText(int start, int end, const QString &text) override;

private:
    QString content() const;
};

} // namespace quillmark
