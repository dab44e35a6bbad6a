// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PaintedRects.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace quillmark {

void PaintedRects::setRects(const Rects &rects)
{
    if (m_rects == rects) {
        return;
    }
    m_rects = rects;
    m_bounds = QRectF();
    for (const Rect &each : m_rects) {
        m_bounds |= each.place;
    }
    markDirty(DirtyGeometry);
}

void PaintedRects::render(const RenderState * /*state*/)
{
    auto *painter = static_cast<QPainter *>(m_window.rendererInterface()->getResource(
        &m_window, QSGRendererInterface::PainterResource));
    painter->setTransform(matrix()->toTransform());
    painter->setOpacity(inheritedOpacity());
    for (const Rect &each : m_rects) {
        if (!each.place.isEmpty()) {
            painter->fillRect(each.place, each.color);
        }
    }
}

} // namespace quillmark
