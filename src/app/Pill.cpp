// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Pill.h"

#include "app/PillNode.h"

#include <QQuickWindow>

namespace quillmark {

Pill::Pill(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void Pill::setColor(const QColor &color)
{
    if (m_color != color) {
        m_color = color;
        Q_EMIT colorChanged();
        update();
    }
}

void Pill::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        update();
    }
}

void Pill::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickItem::itemChange(change, value);
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
}

QSGNode *Pill::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData * /*data*/)
{
    auto *node = static_cast<PillNode *>(oldNode);
    if (!node) {
        node = new PillNode(*window());
    }
    node->setLook({boundingRect(), m_color, window()->effectiveDevicePixelRatio()});
    return node;
}

} // namespace quillmark
