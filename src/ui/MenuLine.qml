// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A line of an open menu. The keyboard and the pointer highlight it alike, by giving it the
/// keyboard's focus.
MenuEntry {
    id: root

    required text

    readonly property color ink: !root.available
        ? Qt.alpha(Theme.color.onSurfaceVariant, 0.6)
        : root.activeFocus ? Theme.color.background : Theme.color.onSurface

    activeFocusOnTab: false
    implicitWidth: Math.ceil(label.implicitWidth) + 2 * label.x
                   + (keys.visible ? Math.ceil(keys.implicitWidth) + 40 : 0)
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * label.y

    Accessible.role: Accessible.MenuItem
    Accessible.ignored: !root.visible

    onPointedAtChanged: {
        if (root.pointedAt) {
            root.forceActiveFocus();
        }
    }

    Rectangle {
        anchors.fill: parent
        visible: root.activeFocus
        color: root.available ? Theme.color.primary : Theme.color.outlineVariant
    }
    StyledText {
        id: label
        x: 16
        y: 8
        text: root.text
        color: root.ink
        Accessible.ignored: true
    }
    StyledText {
        id: keys
        anchors.right: parent.right
        anchors.rightMargin: 16
        y: 8
        visible: root.shortcut.length > 0
        text: root.shortcut
        color: root.available && root.activeFocus ? root.ink : Theme.color.onSurfaceVariant
        Accessible.ignored: true
    }
}
