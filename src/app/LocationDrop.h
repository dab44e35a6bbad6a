// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QQuickItem>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

class QMimeData;

namespace quillmark {

/// An area that takes a file or folder of this machine by drag and drop, and refuses all else.
/// Of several locations it takes the first; whether there is something at it is not looked at.
class LocationDrop : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    /// Whether something that would be taken is being dragged over the area.
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged)

public:
    explicit LocationDrop(QQuickItem *parent = nullptr);

    bool isHovered() const { return m_hovered; }

    /// The first location of a drag where that is a path on this machine; empty otherwise.
    /// Comments among the locations (lines that begin with "#", RFC 2483 section 5) do not count.
    static QUrl firstLocation(const QMimeData &data);

Q_SIGNALS:
    void hoveredChanged();
    void dropped(const QUrl &location);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void setHovered(bool hovered);

    bool m_hovered = false;
};

} // namespace quillmark
