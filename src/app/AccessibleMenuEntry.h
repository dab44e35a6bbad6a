// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AccessibleItem.h"
#include "app/MenuEntry.h"

namespace quillmark {

/// A menu's title or one of its items, as assistive technology sees it.
class AccessibleMenuEntry : public AccessibleControl
{
public:
    explicit AccessibleMenuEntry(MenuEntry *entry) : AccessibleControl(entry) {}

    QAccessible::Role role() const override { return QAccessible::MenuItem; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList keyBindingsForAction(const QString &name) const override;

private:
    MenuEntry *entry() const { return static_cast<MenuEntry *>(object()); }
};

} // namespace quillmark
