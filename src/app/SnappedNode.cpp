// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/SnappedNode.h"

#include <QMatrix4x4>

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

} // namespace

void SnappedNode::preprocess()
{
    const std::optional<QPointF> origin = originInWindow(this);
    if (origin && origin != m_placedAt) {
        m_placedAt = origin;
        place(*origin);
    }
}

} // namespace quillmark
