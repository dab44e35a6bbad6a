// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// What buttons, switches and choices have in common, without a look: a text by which they
/// are known, perhaps a checked state, and a click by key, pointer or assistive technology.
class Control : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY kindChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY checkedChanged)

public:
    enum Kind {
        Button,
        Switch, ///< checked or not
        Choice, ///< checked where it is the one chosen among its neighbours
    };
    Q_ENUM(Kind)

    explicit Control(QQuickItem *parent = nullptr);

    Kind kind() const { return m_kind; }
    void setKind(Kind kind);
    QString text() const { return m_text; }
    void setText(const QString &text);
    /// Shown only: a click leaves it to the owner to change it.
    bool isChecked() const { return m_checked; }
    void setChecked(bool checked);

    /// Clicks, unless the control is disabled.
    Q_INVOKABLE void press();

Q_SIGNALS:
    void kindChanged();
    void textChanged();
    void checkedChanged();
    void clicked();

protected:
    /// Space, Return and Enter click.
    void keyPressEvent(QKeyEvent *event) override;

private:
    Kind m_kind = Button;
    QString m_text;
    bool m_checked = false;
};

} // namespace quillmark
