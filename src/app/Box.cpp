// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Box.h"

#include "app/BoxNode.h"

#include <QQuickWindow>

namespace quillmark {

void BoxBorder::setWidth(qreal width)
{
    if (m_width != width) {
        m_width = width;
        Q_EMIT changed();
    }
}

void BoxBorder::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        Q_EMIT changed();
    }
}

Box::Box(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(&m_border, &BoxBorder::changed, this, &QQuickItem::update);
}

void Box::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        Q_EMIT colorChanged();
        update();
    }
}

void Box::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        update();
    }
}

void Box::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
}

QSGNode *Box::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData * /*data*/)
{
    auto *node = static_cast<BoxNode *>(oldNode);
    if (!node) {
        node = new BoxNode(*window());
    }
    node->setLook({boundingRect(), m_color, m_border.color(), m_border.width(),
                   window()->effectiveDevicePixelRatio()});
    return node;
}

} // namespace quillmark
