// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/AccessibleLabel.h"

#include <QWindow>

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
    // A reader cannot scroll to a text, as it can to a control by giving it the keyboard: what
    // is scrolled out of its panel has to remain readable.
    state.offscreen = !state.invisible && !rect().intersects(window()->geometry());
    state.focusable = false;
    state.readOnly = true;
    return state;
}

} // namespace quillmark
