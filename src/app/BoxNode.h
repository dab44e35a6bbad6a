// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SnappedNode.h"

#include <QColor>
#include <QRectF>
#include <QSGImageNode>
#include <QSGRectangleNode>

#include <array>

class QQuickWindow;

namespace quillmark {

/// How a Box is drawn: a fill and four lines.
///
/// The software renderer takes rectangles, where opaque, for covering whole units. Off them,
/// as at a fractional scale factor, what is below would not be drawn up to their edges, or
/// drawn over them. With it the parts are stretched pictures, which are never taken for
/// opaque.
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
    void place(const QPointF &origin) override;

private:
    /// One of the two, owned as a child.
    struct Part {
        QSGRectangleNode *rectangle = nullptr;
        QSGImageNode *picture = nullptr;
        QColor pictureColor = Qt::transparent;
    };
    void add(Part &part, bool asPicture);
    void draw(Part &part, const QRectF &rect, const QColor &color);
    void paint(Part &part, const QColor &color);

    QQuickWindow &m_window;
    Look m_look;
    Part m_fill;
    std::array<Part, 4> m_lines;
};

} // namespace quillmark
