// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFont>
#include <QObject>
#include <QPalette>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// The palette: sRGB, opaque.
class ThemeColor : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QColor background MEMBER background CONSTANT)
    Q_PROPERTY(QColor surfaceContainerLow MEMBER surfaceContainerLow CONSTANT)
    Q_PROPERTY(QColor surfaceContainer MEMBER surfaceContainer CONSTANT)
    Q_PROPERTY(QColor onSurface MEMBER onSurface CONSTANT)
    Q_PROPERTY(QColor onSurfaceVariant MEMBER onSurfaceVariant CONSTANT)
    Q_PROPERTY(QColor outlineVariant MEMBER outlineVariant CONSTANT)
    Q_PROPERTY(QColor primary MEMBER primary CONSTANT)
    Q_PROPERTY(QColor secondary MEMBER secondary CONSTANT)
    Q_PROPERTY(QColor tertiary MEMBER tertiary CONSTANT)

public:
    using QObject::QObject;

    const QColor background{14, 14, 14};
    const QColor surfaceContainerLow{22, 21, 20};
    const QColor surfaceContainer{31, 29, 27};
    const QColor onSurface{231, 229, 228};
    const QColor onSurfaceVariant{168, 162, 158};
    const QColor outlineVariant{68, 64, 60};
    const QColor primary{234, 191, 141};
    const QColor secondary{132, 165, 148};
    const QColor tertiary{255, 113, 98};
};

/// The type scale: text styles made from the system's font and fixed font at the sizes
/// that the user's settings give them.
class ThemeFont : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QFont headline MEMBER headline CONSTANT)
    Q_PROPERTY(QFont title MEMBER title CONSTANT)
    Q_PROPERTY(QFont label MEMBER label CONSTANT)
    Q_PROPERTY(QFont caption MEMBER caption CONSTANT)
    Q_PROPERTY(QFont body MEMBER body CONSTANT)
    Q_PROPERTY(QFont mono MEMBER mono CONSTANT)
    Q_PROPERTY(QFont figure MEMBER figure CONSTANT)

public:
    explicit ThemeFont(QObject *parent = nullptr);

    const QFont headline; ///< large title, bold
    const QFont title;    ///< title 2, semibold
    const QFont label;    ///< caption, medium
    const QFont caption;  ///< caption, regular
    const QFont body;     ///< the system font itself
    const QFont mono;     ///< callout, fixed pitch
    const QFont figure;   ///< 56 pixels, bold
};

/// The colours and fonts with which everything is drawn. Dark only.
class Theme : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(quillmark::ThemeColor *color READ color CONSTANT)
    Q_PROPERTY(quillmark::ThemeFont *font READ font CONSTANT)
    Q_PROPERTY(qreal disabledOpacity READ disabledOpacity CONSTANT)

public:
    explicit Theme(QObject *parent = nullptr);

    ThemeColor *color() { return &m_color; }
    ThemeFont *font() { return &m_font; }

    /// How much is left of a disabled control that has no look of its own for that.
    static qreal disabledOpacity();

    /// What lies over a control's fill: its content's colour, thin while a pointer hovers over
    /// the control, thicker while it is pressed, transparent otherwise.
    Q_INVOKABLE static QColor stateLayer(QColor content, bool pointedAt, bool pressed);

    /// A font with that many pixels added after each character.
    Q_INVOKABLE static QFont tracked(const QFont &font, qreal tracking);

    /// The colours for windows that the widget library draws.
    static QPalette widgetPalette();

private:
    ThemeColor m_color;
    ThemeFont m_font;
};

} // namespace quillmark
