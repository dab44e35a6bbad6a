// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleLabel.h"

namespace quillmark {

void *AccessibleLabel::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? nullptr : AccessibleItem::interface_cast(type);
}

QString AccessibleLabel::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? item()->property("text").toString()
                                     : AccessibleItem::text(kind);
}

QAccessible::State AccessibleLabel::state() const
{
    QAccessible::State state = AccessibleItem::state();
    state.focusable = false;
    state.readOnly = true;
    return state;
}

} // namespace quillmark
