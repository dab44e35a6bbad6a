// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QEvent;

namespace quillmark {

/// Whether the user works with the keyboard: what has its focus is then marked, and is not
/// for somebody who only points and presses. The rule is that of :focus-visible in browsers
/// (Selectors 4, section 9.4): true after a key, until a pointer is pressed. Keys that only
/// modify, and keys together with Ctrl, Alt or Meta, are commands, and change nothing.
class Keyboard : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool inUse READ isInUse NOTIFY inUseChanged)

public:
    explicit Keyboard(QObject *parent = nullptr);

    bool isInUse() const { return m_inUse; }

    /// Sees every event of the application.
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void inUseChanged();

private:
    void setInUse(bool inUse);

    bool m_inUse = false;
};

} // namespace quillmark
