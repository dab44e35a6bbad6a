// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/MenuEntry.h"

#include <QAccessible>

namespace quillmark {
namespace {

void announce(MenuEntry *entry, QAccessible::State changed)
{
    if (QAccessible::isActive()) {
        QAccessibleStateChangeEvent event(entry, changed);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace

MenuEntry::MenuEntry(QQuickItem *parent) : Control(parent)
{
    connect(this, &Control::clicked, this, [this] {
        if (m_available) {
            Q_EMIT chosen();
        }
    });
}

void MenuEntry::setAvailable(bool available)
{
    if (m_available == available) {
        return;
    }
    m_available = available;
    Q_EMIT availableChanged();
    QAccessible::State changed;
    changed.disabled = true;
    announce(this, changed);
}

void MenuEntry::setTitle(bool title)
{
    if (m_title != title) {
        m_title = title;
        Q_EMIT titleChanged();
    }
}

void MenuEntry::setExpanded(bool expanded)
{
    if (m_expanded == expanded) {
        return;
    }
    m_expanded = expanded;
    Q_EMIT expandedChanged();
    QAccessible::State changed;
    changed.expanded = true;
    announce(this, changed);
}

void MenuEntry::setShortcut(const QString &shortcut)
{
    if (m_shortcut != shortcut) {
        m_shortcut = shortcut;
        Q_EMIT shortcutChanged();
    }
}

} // namespace quillmark
