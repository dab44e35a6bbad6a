// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AccessibleItem.h"

#include <QAccessibleTextInterface>
#include <QObject>

#include <functional>
#include <utility>

namespace quillmark {

/// Lets a signal that is known by its name only call a function.
class NamedSignalWatch : public QObject
{
    Q_OBJECT

public:
    explicit NamedSignalWatch(std::function<void()> then) : m_then(std::move(then)) {}
    Q_SLOT void tell() { m_then(); }

private:
    std::function<void()> m_then;
};

/// A text with a cursor in it (a TextInput or a TextEdit), as assistive technology sees it:
/// it can be read in parts, and selected. It says by itself what is selected; where the
/// cursor goes, Qt Quick says.
///
/// Offsets count UTF-16 units from 0; those outside the text are cut to it.
class AccessibleText : public AccessibleItem, public QAccessibleTextInterface
{
public:
    explicit AccessibleText(QQuickItem *text);

    void *interface_cast(QAccessible::InterfaceType type) override;
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

protected:
    using AccessibleItem::text;
    QString content() const;

private:
    void announceSelection() const;

    NamedSignalWatch m_selection;
};

/// A text that is shown to be read and copied (a TextEdit that is read-only). Its name is
/// the text itself, as that of a label.
class AccessibleMessage : public AccessibleText
{
public:
    explicit AccessibleMessage(QQuickItem *textEdit) : AccessibleText(textEdit) {}

    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QString text(QAccessible::Text kind) const override;
    using AccessibleText::text;
    QAccessible::State state() const override;
    int offsetAtPoint(const QPoint &point) const override;
};

} // namespace quillmark
