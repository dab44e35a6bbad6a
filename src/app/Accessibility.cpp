// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Accessibility.h"

#include "app/AccessibleField.h"
#include "app/AccessibleItem.h"
#include "app/AccessibleLabel.h"
#include "app/AccessibleMenuEntry.h"
#include "app/AccessibleText.h"

#include <QAccessible>

namespace quillmark {
namespace {

QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    // Asked for each class of an object, the most derived first.
    if (className == QLatin1String("quillmark::MenuEntry")) {
        return new AccessibleMenuEntry(qobject_cast<MenuEntry *>(object));
    }
    if (className == QLatin1String("quillmark::Control")) {
        return new AccessibleControl(qobject_cast<Control *>(object));
    }
    if (className == QLatin1String("QQuickTextInput")) {
        return new AccessibleField(qobject_cast<QQuickItem *>(object));
    }
    if (className == QLatin1String("QQuickTextEdit")) {
        return new AccessibleMessage(qobject_cast<QQuickItem *>(object));
    }
    if (className == QLatin1String("QQuickText")) {
        return new AccessibleLabel(qobject_cast<QQuickItem *>(object));
    }
    return nullptr;
}

} // namespace

void installAccessibility()
{
    QAccessible::installFactory(&makeInterface);
}

} // namespace quillmark
