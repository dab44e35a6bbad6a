// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/LocationDrop.h"

#include "app/FileUrl.h"

#include <QDropEvent>
#include <QMimeData>

#include <algorithm>

namespace quillmark {
namespace {

/// A copy whatever the file browser proposes: nothing is to vanish there.
void acceptAsCopy(QDropEvent &event, bool accepted)
{
    event.setAccepted(accepted);
    if (accepted) {
        event.setDropAction(Qt::CopyAction);
    }
}

/// A comment is read as the URL that is nothing but a fragment.
bool isComment(const QUrl &url)
{
    return url.scheme().isEmpty() && url.path().isEmpty() && url.hasFragment();
}

} // namespace

LocationDrop::LocationDrop(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemAcceptsDrops);
}

QUrl LocationDrop::firstLocation(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    const auto first = std::find_if_not(urls.begin(), urls.end(), isComment);
    return first != urls.end() && pathFromFileUrl(*first) ? *first : QUrl();
}

void LocationDrop::dragEnterEvent(QDragEnterEvent *event)
{
    const QMimeData *data = event->mimeData();
    setHovered(data && !firstLocation(*data).isEmpty());
    acceptAsCopy(*event, m_hovered);
}

void LocationDrop::dragMoveEvent(QDragMoveEvent *event)
{
    acceptAsCopy(*event, m_hovered);
}

void LocationDrop::dragLeaveEvent(QDragLeaveEvent *)
{
    setHovered(false);
}

void LocationDrop::dropEvent(QDropEvent *event)
{
    // A copy, taken before anything else: the data belongs to the drag, which ends here.
    const QUrl location = event->mimeData() ? firstLocation(*event->mimeData()) : QUrl();
    acceptAsCopy(*event, !location.isEmpty());
    setHovered(false);
    if (!location.isEmpty()) {
        Q_EMIT dropped(location);
    }
}

void LocationDrop::itemChange(ItemChange change, const ItemChangeData &data)
{
    // A drag over an area that goes away does not leave it.
    if ((change == ItemVisibleHasChanged || change == ItemEnabledHasChanged) && !data.boolValue) {
        setHovered(false);
    }
    QQuickItem::itemChange(change, data);
}

void LocationDrop::setHovered(bool hovered)
{
    if (m_hovered != hovered) {
        m_hovered = hovered;
        Q_EMIT hoveredChanged();
    }
}

} // namespace quillmark
