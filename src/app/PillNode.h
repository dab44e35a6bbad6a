// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SnappedNode.h"

#include <QColor>
#include <QRectF>
#include <QSGImageNode>
#include <QSize>

namespace quillmark {

/// How a Pill is drawn: a picture with one pixel for each of the device.
class PillNode : public SnappedNode
{
public:
    struct Look {
        QRectF rect; ///< in the item's coordinates
        QColor fill;
        qreal scale = 1; ///< device pixels in a unit

        bool operator==(const Look &) const = default;
    };

    explicit PillNode(QQuickWindow &window);

    void setLook(const Look &look);

protected:
    QRectF place(const QPointF &origin) override;
    void redraw() override {} // never opaque

private:
    void paint(const QSize &pixels);

    Look m_look;
    QSize m_painted;
    QSGImageNode *m_picture;
};

} // namespace quillmark
