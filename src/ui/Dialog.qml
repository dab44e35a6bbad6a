// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A panel in the middle of the window, over content that cannot be reached meanwhile.
Overlay {
    id: root

    /// What assistive technology calls it.
    required property string name
    /// How high its content wants to be. It becomes so where the window has room.
    required property real contentHeight
    property real panelWidth: 440
    default property alias content: holder.data

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onWheel: wheel => wheel.accepted = true
    }
    Rectangle {
        anchors.fill: parent
        color: Qt.alpha(Theme.color.background, 0.5)
    }

    Box {
        anchors.centerIn: parent
        width: Math.min(root.panelWidth, root.width - 80)
        height: Math.min(root.contentHeight + 64, root.height - 40)
        color: Theme.color.surfaceContainer
        border.width: 1
        border.color: Theme.color.outlineVariant

        Accessible.role: Accessible.Dialog
        Accessible.name: root.name
        Accessible.ignored: !root.visible

        Item {
            id: holder
            anchors.fill: parent
            anchors.margins: 32
        }
    }
}
