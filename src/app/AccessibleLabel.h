// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AccessibleItem.h"

namespace quillmark {

/// A text that is only shown (a Text), as assistive technology sees it: nothing can be done
/// to it, and the keyboard never comes to it.
class AccessibleLabel : public AccessibleItem
{
public:
    explicit AccessibleLabel(QQuickItem *text) : AccessibleItem(text) {}

    void *interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
};

} // namespace quillmark
