// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QRectF>
#include <QSGNode>
#include <QSGRectangleNode>

#include <array>
#include <optional>

class QQuickWindow;

namespace quillmark {

/// How a Box is drawn: a fill and four lines. Where they go is decided in every frame, since
/// whatever the box stands in may have moved. Render thread only.
class BoxNode : public QSGNode
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

    /// Called by the scene graph ahead of each frame.
    void preprocess() override;

private:
    void place(const QPointF &origin);

    Look m_look;
    std::optional<QPointF> m_placedAt;
    QSGRectangleNode *m_fill;
    std::array<QSGRectangleNode *, 4> m_lines;
};

} // namespace quillmark
