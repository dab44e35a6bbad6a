// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SnappedNode.h"

#include <QColor>
#include <QRectF>
#include <QSGRectangleNode>

#include <array>

namespace quillmark {

/// How a Box is drawn: a fill and four lines.
class BoxNode : public SnappedNode
{
public:
    struct Look {
        QRectF rect; ///< in the item's coordinates
        QColor fill;
        QColor line;
        qreal lineWidth = 0;
        qreal scale = 1; ///< device pixels in a unit

        bool operator==(const Look &) const = default;
    };

    explicit BoxNode(QQuickWindow &window);

    void setLook(const Look &look);

protected:
    QRectF place(const QPointF &origin) override;
    void redraw() override;

private:
    Look m_look;
    QSGRectangleNode *m_fill;
    std::array<QSGRectangleNode *, 4> m_lines{};
};

} // namespace quillmark
