// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Theme.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace quillmark {
namespace {

constexpr qreal largeTitleScale = 2.0;
constexpr qreal title2Scale = 1.31;
constexpr qreal calloutScale = 0.92;
constexpr qreal captionScale = 0.77;
constexpr int figurePixels = 56;

constexpr float pointedAtShare = 0.12F;
constexpr float pressedShare = 0.26F;
constexpr qreal disabledShare = 0.5;

QFont scaled(QFont font, qreal scale, QFont::Weight weight)
{
    // A system font is given either in points or in pixels; the other size is then -1.
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * scale);
    } else {
        font.setPixelSize(qMax(1, qRound(font.pixelSize() * scale)));
    }
    font.setWeight(weight);
    return font;
}

QFont ofSize(QFont font, const QFont &size)
{
    if (size.pointSizeF() > 0) {
        font.setPointSizeF(size.pointSizeF());
    } else {
        font.setPixelSize(size.pixelSize());
    }
    return font;
}

QFont figureFont(QFont font)
{
    font.setPixelSize(figurePixels);
    font.setWeight(QFont::Bold);
    return font;
}

} // namespace

ThemeFont::ThemeFont(QObject *parent)
    : QObject(parent),
      headline(scaled(QGuiApplication::font(), largeTitleScale, QFont::Bold)),
      title(scaled(QGuiApplication::font(), title2Scale, QFont::DemiBold)),
      label(scaled(QGuiApplication::font(), captionScale, QFont::Medium)),
      caption(scaled(QGuiApplication::font(), captionScale, QFont::Normal)),
      body(scaled(QGuiApplication::font(), 1.0, QFont::Normal)),
      mono(scaled(
          ofSize(QFontDatabase::systemFont(QFontDatabase::FixedFont), QGuiApplication::font()),
          calloutScale, QFont::Normal)),
      figure(figureFont(QGuiApplication::font()))
{}

Theme::Theme(QObject *parent) : QObject(parent) {}

qreal Theme::disabledOpacity()
{
    return disabledShare;
}

QColor Theme::stateLayer(QColor content, bool pointedAt, bool pressed)
{
    if (!pointedAt && !pressed) {
        return Qt::transparent;
    }
    content.setAlphaF(pressed ? pressedShare : pointedAtShare);
    return content;
}

QFont Theme::tracked(const QFont &font, qreal tracking)
{
    QFont result = font;
    result.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return result;
}

QPalette Theme::widgetPalette()
{
    const ThemeColor color;
    QPalette palette(color.outlineVariant, color.surfaceContainer);
    palette.setColor(QPalette::Base, color.background);
    palette.setColor(QPalette::AlternateBase, color.surfaceContainerLow);
    palette.setColor(QPalette::ToolTipBase, color.surfaceContainer);
    palette.setColor(QPalette::Highlight, color.primary);
    palette.setColor(QPalette::HighlightedText, color.background);
    palette.setColor(QPalette::Link, color.primary);
    palette.setColor(QPalette::LinkVisited, color.secondary);
    palette.setColor(QPalette::PlaceholderText, color.onSurfaceVariant);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::BrightText}) {
        palette.setColor(role, color.onSurface);
        palette.setColor(QPalette::Disabled, role, color.onSurfaceVariant);
    }
    return palette;
}

} // namespace quillmark
