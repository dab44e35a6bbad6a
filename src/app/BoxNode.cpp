// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/BoxNode.h"

#include "app/PixelGrid.h"

#include <QImage>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <algorithm>

namespace quillmark {
namespace {

/// The four sides of a frame inside a rectangle: the upper and lower one in full length.
std::array<QRectF, 4> sides(const QRectF &rect, qreal width)
{
    const qreal height = std::min(width, rect.height());
    const qreal between = std::max(0.0, rect.height() - 2 * height);
    const qreal across = std::min(width, rect.width());
    return {QRectF(rect.x(), rect.y(), rect.width(), height),
            QRectF(rect.x(), rect.bottom() - height, rect.width(), height),
            QRectF(rect.x(), rect.y() + height, across, between),
            QRectF(rect.right() - across, rect.y() + height, across, between)};
}

} // namespace

BoxNode::BoxNode(QQuickWindow &window) : m_window(window)
{
    const bool software =
        window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    add(m_fill, software);
    for (Part &line : m_lines) {
        add(line, software);
    }
}

void BoxNode::add(Part &part, bool asPicture)
{
    if (asPicture) {
        part.picture = m_window.createImageNode();
        part.picture->setOwnsTexture(true);
        part.picture->setFiltering(QSGTexture::Nearest);
        paint(part, part.pictureColor);
        appendChildNode(part.picture);
    } else {
        part.rectangle = m_window.createRectangleNode();
        appendChildNode(part.rectangle);
    }
}

void BoxNode::setLook(const Look &look)
{
    if (m_look == look) {
        return;
    }
    m_look = look;
    // For where nothing is snapped.
    place({});
    setStale();
}

void BoxNode::place(const QPointF &origin)
{
    const QRectF rect =
        pixelgrid::aligned(m_look.rect.translated(origin), m_look.scale).translated(-origin);
    draw(m_fill, rect, m_look.fill);
    const auto lines = sides(rect, pixelgrid::thickness(m_look.lineWidth, m_look.scale));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        draw(m_lines[i], lines[i], m_look.line);
    }
}

void BoxNode::draw(Part &part, const QRectF &rect, const QColor &color)
{
    const QRectF seen = color.alpha() > 0 && !rect.isEmpty() ? rect : QRectF();
    if (part.rectangle) {
        part.rectangle->setRect(seen);
        part.rectangle->setColor(color);
        return;
    }
    if (part.pictureColor != color) {
        paint(part, color);
    }
    part.picture->setRect(seen);
}

void BoxNode::paint(Part &part, const QColor &color)
{
    // The pixel that is not shown makes it a picture with transparency.
    QImage image(2, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setPixelColor(0, 0, color);
    part.picture->setTexture(m_window.createTextureFromImage(image));
    part.picture->setSourceRect(QRectF(0, 0, 1, 1));
    part.pictureColor = color;
}

} // namespace quillmark
