// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PillNode.h"

#include "app/PixelGrid.h"

#include <QImage>
#include <QPainter>

#include <algorithm>

namespace quillmark {

PillNode::PillNode(QQuickWindow &quickWindow)
    : SnappedNode(quickWindow), m_picture(quickWindow.createImageNode())
{
    m_picture->setOwnsTexture(true);
    appendChildNode(m_picture); // which owns it from here on
}

void PillNode::setLook(const Look &look)
{
    if (m_look == look) {
        return;
    }
    m_look = look;
    m_painted = QSize();
    // For where nothing is snapped.
    place({});
    setStale();
}

QRectF PillNode::place(const QPointF &origin)
{
    const QRectF inWindow = pixelgrid::aligned(m_look.rect.translated(origin), m_look.scale);
    const QSize pixels = (inWindow.size() * m_look.scale).toSize().expandedTo({1, 1});
    if (pixels != m_painted) {
        paint(pixels);
    }
    m_picture->setRect(inWindow.translated(-origin));
    return inWindow;
}

void PillNode::paint(const QSize &pixels)
{
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_look.fill);
    const qreal radius = std::min(pixels.width(), pixels.height()) / 2.0;
    painter.drawRoundedRect(image.rect(), radius, radius);
    painter.end();
    m_picture->setTexture(window().createTextureFromImage(image));
    m_picture->setSourceRect(image.rect());
    m_painted = pixels;
}

} // namespace quillmark
