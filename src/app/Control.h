// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// What buttons, switches and choices have in common, without a look: a text by which they
/// are known, perhaps a checked state, and a click by key, pointer or assistive technology.
///
/// A pointer clicks where it is released over the control that it was pressed on. Space clicks
/// when it is released, Return and Enter when they are pressed.
class Control : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY kindChanged)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(bool checked READ isChecked WRITE setChecked NOTIFY checkedChanged)
    Q_PROPERTY(bool pointedAt READ isPointedAt NOTIFY pointedAtChanged)
    Q_PROPERTY(bool pressed READ isPressed NOTIFY pressedChanged)

public:
    enum Kind {
        Button,
        Switch, ///< checked or not
        Choice, ///< checked where it is the one chosen among its neighbours
        Day,    ///< of a calendar; checked where it is the chosen one
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

    /// Whether a pointer hovers over it. Never while disabled.
    bool isPointedAt() const { return m_hovered && isEnabled(); }
    /// Whether letting go of the button or key that is down would click. Never while disabled.
    bool isPressed() const { return m_pressedBy != Nothing; }

    /// Clicks, unless the control is disabled.
    Q_INVOKABLE void press();

Q_SIGNALS:
    void kindChanged();
    void textChanged();
    void checkedChanged();
    void pointedAtChanged();
    void pressedChanged();
    void clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverLeaveEvent(QHoverEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    enum PressedBy {
        Nothing,
        Pointer,
        SpaceKey,
    };
    void setHovered(bool hovered);
    void setPressedBy(PressedBy what);

    Kind m_kind = Button;
    QString m_text;
    bool m_checked = false;
    bool m_hovered = false;
    PressedBy m_pressedBy = Nothing;
};

} // namespace quillmark
