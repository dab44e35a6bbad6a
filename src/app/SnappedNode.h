// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointF>
#include <QQuickWindow>
#include <QRectF>
#include <QSGNode>

#include <optional>

namespace quillmark {

/// Draws something on whole device pixels. Which these are is decided in every frame, since
/// whatever the item stands in may have moved. Nothing is snapped under a rotation or scaling.
/// Render thread only.
class SnappedNode : public QSGNode
{
public:
    explicit SnappedNode(QQuickWindow &window);

    /// Called by the scene graph ahead of each frame.
    void preprocess() final;

protected:
    QQuickWindow &window() const { return m_window; }
    /// What is to be drawn has changed.
    void setStale() { m_placedAt.reset(); }

    /// Puts the parts where they belong, given the item's origin in the window. Gives the
    /// rectangle that they fill, in the window's coordinates.
    virtual QRectF place(const QPointF &origin) = 0;
    /// Has the parts drawn again in the next frame.
    virtual void redraw() = 0;

private:
    QQuickWindow &m_window;
    std::optional<QPointF> m_placedAt;
    bool m_redrawn = false;
};

} // namespace quillmark
