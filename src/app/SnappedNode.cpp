// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/SnappedNode.h"

#include <QMatrix4x4>
#include <QSGRendererInterface>

#include <cmath>

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

bool isWhole(qreal value)
{
    return value == std::floor(value);
}

} // namespace

SnappedNode::SnappedNode(QQuickWindow &window) : m_window(window)
{
    setFlag(UsePreprocess);
}

void SnappedNode::preprocess()
{
    const std::optional<QPointF> origin = originInWindow(this);
    if (!origin) {
        return;
    }
    if (origin != m_placedAt) {
        m_placedAt = origin;
        const QRectF rect = place(*origin);
        // The software renderer takes opaque parts for covering whole units only, lets what
        // is below them paint over the rest of their edges, and does not draw them again.
        m_redrawn = m_window.rendererInterface()->graphicsApi() == QSGRendererInterface::Software &&
                    !(isWhole(origin->x()) && isWhole(origin->y()) && isWhole(rect.left()) &&
                      isWhole(rect.top()) && isWhole(rect.right()) && isWhole(rect.bottom()));
    }
    if (m_redrawn) {
        redraw();
    }
}

} // namespace quillmark
