// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/MainWindow.h"

#include <QAccessible>
#include <QList>
#include <QString>

#include <stdexcept>

namespace quillmark::test {

/// The window as a screen reader sees it.
class AccessibleWindow : public MainWindow
{
protected:
    using MainWindow::MainWindow;

    static QList<QAccessibleInterface *> below(QAccessibleInterface *parent)
    {
        QList<QAccessibleInterface *> all;
        for (int i = 0; i < parent->childCount(); ++i) {
            all.append(parent->child(i));
            all.append(below(parent->child(i)));
        }
        return all;
    }
    QList<QAccessibleInterface *> everything() const
    {
        return below(QAccessible::queryAccessibleInterface(m_window.get()));
    }
    QList<QAccessibleInterface *> all(const QString &name, QAccessible::Role role) const
    {
        QList<QAccessibleInterface *> found = everything();
        found.removeIf([&](QAccessibleInterface *each) {
            return each->role() != role || each->text(QAccessible::Name) != name;
        });
        return found;
    }
    QAccessibleInterface *one(const QString &name, QAccessible::Role role) const
    {
        const auto found = all(name, role);
        if (found.size() != 1) {
            throw std::runtime_error(QString::number(found.size()).toStdString() + " of " +
                                     name.toStdString());
        }
        return found.first();
    }
    /// Where the keyboard is; throws where it is nowhere.
    QAccessibleInterface *focused() const
    {
        QList<QAccessibleInterface *> found = everything();
        found.removeIf([](QAccessibleInterface *each) { return !each->state().focused; });
        if (found.size() != 1) {
            throw std::runtime_error(std::to_string(found.size()) + " items have the keyboard");
        }
        return found.first();
    }
    QString focusedName() const { return focused()->text(QAccessible::Name); }

    static void press(QAccessibleInterface *target)
    {
        target->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(m_window.get(), key, modifiers);
    }
};

} // namespace quillmark::test
