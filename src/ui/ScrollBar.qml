// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Shows how much of a Flickable is seen, while that is not all of it, and moves it.
Item {
    id: root

    required property Flickable flickable

    width: 10
    visible: root.flickable.contentHeight > root.flickable.height

    Rectangle {
        id: thumb
        x: 3
        y: root.flickable.visibleArea.yPosition * root.height
        width: 4
        height: Math.max(24, root.flickable.visibleArea.heightRatio * root.height)
        radius: 2
        color: drag.active || hover.hovered ? Theme.color.primary : Theme.color.onSurfaceVariant
    }

    HoverHandler {
        id: hover
    }

    DragHandler {
        id: drag
        target: null
        property real startY: 0
        onActiveChanged: drag.startY = root.flickable.contentY
        onTranslationChanged: root.flickable.contentY = Math.max(0, Math.min(
            root.flickable.contentHeight - root.flickable.height,
            drag.startY + drag.translation.y * root.flickable.contentHeight / root.height))
    }
}
