// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRectF>

namespace quillmark::pixelgrid {

/// What fits onto whole device pixels. Lengths and rectangles are in the window's units, of
/// which one is `scale` device pixels wide; scale may be any positive number.

/// A line's thickness: as many whole device pixels as fit into it, but at least one, so that
/// lines of the same thickness look the same wherever they stand. Zero stays zero. This is
/// how CSS snaps border widths (CSS Values and Units 4, "snap a length as a border width").
[[nodiscard]] qreal thickness(qreal length, qreal scale);

/// A rectangle in the window with each edge on the nearest boundary between device pixels, so
/// that rectangles that touch still do. A side of up to two units is a line, and gets the
/// thickness of one.
[[nodiscard]] QRectF aligned(const QRectF &rect, qreal scale);

} // namespace quillmark::pixelgrid
