// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// An open menu below its title. A press elsewhere closes it.
Overlay {
    id: root

    /// What assistive technology calls the menu: its title.
    required property string name
    /// Where the menu begins, from the window's upper edge.
    required property real topEdge
    default property alias items: column.data

    /// Moves the highlight by a number of lines, from the last to the first too.
    function step(lines: int): void {
        const all = Array.from(column.children);
        const from = all.findIndex(each => each.activeFocus);
        all[(from + lines + all.length) % all.length].forceActiveFocus();
    }

    start: column.children[0]

    Keys.onUpPressed: root.step(-1)
    Keys.onDownPressed: root.step(1)
    Keys.onBacktabPressed: root.step(-1)
    Keys.onTabPressed: root.step(1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home) {
            column.children[0].forceActiveFocus();
        } else if (event.key === Qt.Key_End) {
            column.children[column.children.length - 1].forceActiveFocus();
        }
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        // Not when it is pressed: what lies below would get the rest of the press.
        onReleased: root.close()
        onWheel: wheel => wheel.accepted = true
    }

    Box {
        y: root.topEdge
        width: column.width + 2
        height: column.height + 2
        color: Theme.color.surfaceContainer
        border.width: 1
        border.color: Theme.color.outlineVariant

        Accessible.role: Accessible.PopupMenu
        Accessible.name: root.name
        Accessible.ignored: !root.visible

        // Its edge belongs to it: a press there is none elsewhere.
        MouseArea {
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
        }
        Column {
            id: column
            x: 1
            y: 1
            width: Math.max(...Array.from(column.children).map(each => each.implicitWidth))
        }
    }
}
