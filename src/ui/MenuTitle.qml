// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The title of a menu in a menu bar.
MenuEntry {
    id: root

    required text
    required expanded

    title: true
    implicitWidth: Math.ceil(label.implicitWidth) + 2 * label.x
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * label.y

    Accessible.role: Accessible.MenuItem
    Accessible.ignored: !root.visible

    Keys.onDownPressed: root.press()

    Rectangle {
        anchors.fill: parent
        visible: root.expanded || root.pointedAt
        color: root.expanded ? Theme.color.primary : Theme.color.surfaceContainer
    }
    StyledText {
        id: label
        x: 12
        y: 6
        text: root.text
        color: root.expanded ? Theme.color.background : Theme.color.onSurface
        Accessible.ignored: true
    }
    FocusRing {
        target: root
        anchors.margins: 0
    }
}
