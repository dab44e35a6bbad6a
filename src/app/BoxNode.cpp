// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/BoxNode.h"

#include "app/PixelGrid.h"

#include <QMatrix4x4>
#include <QQuickWindow>

#include <algorithm>

namespace quillmark {
namespace {

/// Where a node's origin is in the window; nothing if the way there is more than a shift.
std::optional<QPointF> originInWindow(const QSGNode *node)
{
    QMatrix4x4 whole;
    for (const QSGNode *each = node; each; each = each->parent()) {
        if (each->type() == QSGNode::TransformNodeType) {
            whole = static_cast<const QSGTransformNode *>(each)->matrix() * whole;
        }
    }
    const QPointF origin(whole(0, 3), whole(1, 3));
    whole(0, 3) = 0;
    whole(1, 3) = 0;
    return whole.isIdentity() ? std::optional(origin) : std::nullopt;
}

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

BoxNode::BoxNode(QQuickWindow &window)
    : m_fill(newRectangle(window, *this)),
      m_lines{newRectangle(window, *this), newRectangle(window, *this), newRectangle(window, *this),
              newRectangle(window, *this)}
{
    setFlag(UsePreprocess);
}

void BoxNode::setLook(const Look &look)
{
    if (m_look == look) {
        return;
    }
    m_look = look;
    m_placedAt.reset();
    m_fill->setColor(look.fill);
    for (QSGRectangleNode *line : m_lines) {
        line->setColor(look.line);
    }
    place({});
    m_placedAt.reset();
}

void BoxNode::preprocess()
{
    const auto origin = originInWindow(this);
    if (origin && origin != m_placedAt) {
        place(*origin);
    }
}

void BoxNode::place(const QPointF &origin)
{
    m_placedAt = origin;
    const QRectF rect =
        pixelgrid::aligned(m_look.rect.translated(origin), m_look.scale).translated(-origin);
    m_fill->setRect(m_look.fill.alpha() > 0 ? rect : QRectF());
    const bool lined = m_look.line.alpha() > 0 && m_look.lineWidth > 0;
    const auto lines = sides(rect, pixelgrid::thickness(m_look.lineWidth, m_look.scale));
    for (std::size_t i = 0; i < lines.size(); ++i) {
        m_lines[i]->setRect(lined ? lines[i] : QRectF());
    }
}

} // namespace quillmark
