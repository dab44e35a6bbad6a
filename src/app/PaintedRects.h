// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QRectF>
#include <QSGRenderNode>

#include <array>

class QQuickWindow;

namespace quillmark {

/// Filled rectangles for the software renderer, in the item's coordinates.
///
/// Its own rectangles are taken, where opaque, for covering whole units. At a fractional scale
/// factor they cover less: what is below is then not drawn up to their edges, or drawn over
/// them. These are never taken for opaque. Render thread only.
class PaintedRects : public QSGRenderNode
{
public:
    struct Rect {
        QRectF place;
        QColor color;

        bool operator==(const Rect &) const = default;
    };
    using Rects = std::array<Rect, 5>;

    explicit PaintedRects(QQuickWindow &window) : m_window(window) {}

    void setRects(const Rects &rects);

    QRectF rect() const override { return m_bounds; }
    RenderingFlags flags() const override { return BoundedRectRendering; }
    void render(const RenderState *state) override;

private:
    QQuickWindow &m_window;
    Rects m_rects;
    QRectF m_bounds;
};

} // namespace quillmark
