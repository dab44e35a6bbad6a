// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/BoxNode.h"

#include "app/PixelGrid.h"

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

QSGRectangleNode *newRectangle(QQuickWindow &window, QSGNode &parent)
{
    QSGRectangleNode *node = window.createRectangleNode();
    parent.appendChildNode(node); // which owns it from here on
    return node;
}

} // namespace

BoxNode::BoxNode(QQuickWindow &quickWindow)
    : SnappedNode(quickWindow), m_fill(newRectangle(quickWindow, *this))
{
    for (QSGRectangleNode *&line : m_lines) {
        line = newRectangle(quickWindow, *this);
    }
}

void BoxNode::setLook(const Look &look)
{
    if (m_look == look) {
        return;
    }
    m_look = look;
    m_fill->setColor(look.fill);
    for (QSGRectangleNode *line : m_lines) {
        line->setColor(look.line);
    }
    // For where nothing is snapped.
    place({});
    setStale();
}

QRectF BoxNode::place(const QPointF &origin)
{
    const QRectF inWindow = pixelgrid::aligned(m_look.rect.translated(origin), m_look.scale);
    const QRectF rect = inWindow.translated(-origin);
    m_fill->setRect(m_look.fill.alpha() > 0 ? rect : QRectF());
    const bool lined = m_look.line.alpha() > 0 && m_look.lineWidth > 0;
    const auto lines = sides(rect, pixelgrid::thickness(m_look.lineWidth, m_look.scale));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        m_lines[i]->setRect(lined ? lines[i] : QRectF());
    }
    return inWindow;
}

void BoxNode::redraw()
{
    m_fill->markDirty(DirtyMaterial);
    for (QSGRectangleNode *line : m_lines) {
        line->markDirty(DirtyMaterial);
    }
}

} // namespace quillmark
