// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// The line along the edges of a Box.
class BoxBorder : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(qreal width READ width WRITE setWidth NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    using QObject::QObject;

    qreal width() const { return m_width; }
    void setWidth(qreal width);
    QColor color() const { return m_color; }
    void setColor(const QColor &color);

Q_SIGNALS:
    void changed();

private:
    qreal m_width = 0.0;
    QColor m_color = Qt::transparent;
};

/// A rectangle with a fill and a border inside its edges, both transparent unless set, whose
/// lines are whole device pixels wide and stand on whole device pixels at every scale factor
/// and position, also while a panel scrolls. Nothing is snapped under a rotation or scaling.
class Box : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(quillmark::BoxBorder *border READ border CONSTANT)

public:
    explicit Box(QQuickItem *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);
    BoxBorder *border() { return &m_border; }

Q_SIGNALS:
    void colorChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    QColor m_color = Qt::transparent;
    BoxBorder m_border;
};

} // namespace quillmark
