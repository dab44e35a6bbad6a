// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/BoxNode.h"

#include "app/PixelGrid.h"

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

BoxNode::BoxNode(QQuickWindow &window)
{
    if (window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software) {
        m_painted = new PaintedRects(window);
        appendChildNode(m_painted);
        return;
    }
    for (QSGRectangleNode *&each : m_rectangles) {
        each = window.createRectangleNode();
        appendChildNode(each);
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
    PaintedRects::Rects rects;
    if (m_look.fill.alpha() > 0) {
        rects[0] = {rect, m_look.fill};
    }
    if (m_look.line.alpha() > 0 && m_look.lineWidth > 0) {
        const auto lines = sides(rect, pixelgrid::thickness(m_look.lineWidth, m_look.scale));
        for (std::size_t i = 0; i < lines.size(); ++i) {
            rects[i + 1] = {lines[i], m_look.line};
        }
    }
    if (m_painted) {
        m_painted->setRects(rects);
        return;
    }
    for (std::size_t i = 0; i < rects.size(); ++i) {
        m_rectangles[i]->setRect(rects[i].place);
        m_rectangles[i]->setColor(rects[i].color);
    }
}

} // namespace quillmark
