// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Control.h"

#include <QAccessibleActionInterface>
#include <QAccessibleObject>
#include <QQuickItem>
#include <QVariant>

namespace quillmark {

/// An item of the window without accessible children, as assistive technology sees it. It
/// says by itself when the item is enabled or disabled.
class AccessibleItem : public QAccessibleObject, public QAccessibleActionInterface
{
public:
    explicit AccessibleItem(QQuickItem *item);
    ~AccessibleItem() override;

    void *interface_cast(QAccessible::InterfaceType type) override;
    QWindow *window() const override;
    QRect rect() const override;
    /// What is cut off by the window or scrolled out of a panel is off the screen.
    QAccessible::State state() const override;
    /// The description is that given with Accessible.description.
    QString text(QAccessible::Text kind) const override;

    /// The nearest item around this one that is in the tree too, or the window.
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override;
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *child) const override;

    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &name) const override;

protected:
    QQuickItem *item() const { return static_cast<QQuickItem *>(object()); }
    /// What was given with a property of the attached object Accessible.
    QVariant attached(const QString &property) const;
    /// Tells assistive technology what happened to the item, once.
    void announce(QAccessibleEvent &&event) const;

private:
    QRectF seenRect() const;

    QMetaObject::Connection m_enabledChanged;
};

/// A button, switch or choice.
class AccessibleControl : public AccessibleItem
{
public:
    explicit AccessibleControl(Control *control);

    QAccessible::Role role() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    Control *control() const { return static_cast<Control *>(object()); }
};

} // namespace quillmark
