// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointF>
#include <QSGNode>

#include <optional>

namespace quillmark {

/// Draws something on whole device pixels. Which these are is decided in every frame, since
/// whatever the item stands in may have moved. Nothing is snapped under a rotation or scaling.
/// Render thread only.
class SnappedNode : public QSGNode
{
public:
    SnappedNode() { setFlag(UsePreprocess); }

    /// Called by the scene graph ahead of each frame.
    void preprocess() final;

protected:
    /// What is to be drawn has changed.
    void setStale() { m_placedAt.reset(); }

    /// Puts the parts where they belong, given the item's origin in the window.
    virtual void place(const QPointF &origin) = 0;

private:
    std::optional<QPointF> m_placedAt;
};

} // namespace quillmark
