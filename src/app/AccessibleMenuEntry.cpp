// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleMenuEntry.h"

namespace quillmark {

QString AccessibleMenuEntry::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Accelerator ? entry()->shortcut() : AccessibleControl::text(kind);
}

QAccessible::State AccessibleMenuEntry::state() const
{
    QAccessible::State state = AccessibleControl::state();
    state.disabled = state.disabled || !entry()->isAvailable();
    state.hasPopup = entry()->isTitle();
    state.expandable = entry()->isTitle();
    state.expanded = entry()->isExpanded();
    state.collapsed = entry()->isTitle() && !entry()->isExpanded();
    return state;
}

QStringList AccessibleMenuEntry::keyBindingsForAction(const QString &name) const
{
    if (name != pressAction() || entry()->shortcut().isEmpty()) {
        return {};
    }
    return {entry()->shortcut()};
}

} // namespace quillmark
