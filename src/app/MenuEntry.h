// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Control.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// A menu's title or one of its items, without a look.
///
/// An item that is not available cannot be chosen, but the keyboard comes to it as to any
/// other, so that it can be read; hence not `enabled`, which would keep the keyboard away.
class MenuEntry : public quillmark::Control // qualified, for the QML type lookup
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool available READ isAvailable WRITE setAvailable NOTIFY availableChanged)
    Q_PROPERTY(bool title READ isTitle WRITE setTitle NOTIFY titleChanged)
    Q_PROPERTY(bool expanded READ isExpanded WRITE setExpanded NOTIFY expandedChanged)
    Q_PROPERTY(QString shortcut READ shortcut WRITE setShortcut NOTIFY shortcutChanged)

public:
    explicit MenuEntry(QQuickItem *parent = nullptr);

    bool isAvailable() const { return m_available; }
    void setAvailable(bool available);
    /// Whether choosing it opens a menu.
    bool isTitle() const { return m_title; }
    void setTitle(bool title);
    /// Whether that menu is open.
    bool isExpanded() const { return m_expanded; }
    void setExpanded(bool expanded);
    /// The keys that choose it from anywhere, as they are shown; for reading only.
    QString shortcut() const { return m_shortcut; }
    void setShortcut(const QString &shortcut);

Q_SIGNALS:
    void availableChanged();
    void titleChanged();
    void expandedChanged();
    void shortcutChanged();
    /// Clicked while available.
    void chosen();

private:
    bool m_available = true;
    bool m_title = false;
    bool m_expanded = false;
    QString m_shortcut;
};

} // namespace quillmark
