// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Shows how much of a Flickable is seen, while that is not all of it, and moves it: by
/// dragging, or with the arrow and page keys.
Item {
    id: root

    required property Flickable flickable

    /// How far the content goes, and how far the thumb goes with it.
    readonly property real range:
        Math.max(0, root.flickable.contentHeight - root.flickable.height)
    readonly property real travel: Math.max(0, root.height - thumb.height)

    function scrollTo(y: real): void {
        root.flickable.contentY = Math.max(0, Math.min(root.range, y));
    }

    width: 10
    visible: root.range > 0
    opacity: root.enabled ? 1.0 : Theme.disabledOpacity

    Accessible.role: Accessible.ScrollBar
    Accessible.ignored: !root.visible
    Accessible.focusable: root.activeFocusOnTab

    Keys.onUpPressed: root.scrollTo(root.flickable.contentY - 40)
    Keys.onDownPressed: root.scrollTo(root.flickable.contentY + 40)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_PageUp) {
            root.scrollTo(root.flickable.contentY - root.flickable.height);
        } else if (event.key === Qt.Key_PageDown) {
            root.scrollTo(root.flickable.contentY + root.flickable.height);
        }
    }

    Pill {
        id: thumb
        x: 3
        objectName: "thumb"
        y: root.range > 0 ? root.travel * root.flickable.contentY / root.range : 0
        width: 4
        height: Math.min(root.height, Math.max(24, root.flickable.visibleArea.heightRatio * root.height))
        color: press.active || drag.active ? Theme.color.primary
               : hover.hovered ? Theme.color.onSurface
               : Theme.color.onSurfaceVariant
    }

    HoverHandler {
        id: hover
    }
    PointHandler {
        id: press
    }

    DragHandler {
        id: drag
        target: null
        property real startY: 0
        onActiveChanged: drag.startY = root.flickable.contentY
        onTranslationChanged: {
            if (root.travel > 0) {
                root.scrollTo(drag.startY + drag.translation.y * root.range / root.travel);
            }
        }
    }
}
