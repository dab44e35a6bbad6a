// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Says what the program is.
Overlay {
    id: root

    property string version: Qt.application.version

    start: closing

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
        width: Math.min(440, root.width - 80)
        height: texts.height + 64
        color: Theme.color.surfaceContainer
        border.width: 1
        border.color: Theme.color.outlineVariant

        Accessible.role: Accessible.Dialog
        Accessible.name: "About Quillmark"
        Accessible.ignored: !root.visible

        Column {
            id: texts
            x: 32
            y: 32
            width: parent.width - 64
            spacing: 12

            TitleText {
                id: title
                width: parent.width
                text: "Quillmark"
            }
            MonoText {
                id: versionText
                width: parent.width
                text: "Version " + root.version
                wrapMode: Text.Wrap
            }
            BodyText {
                id: purpose
                width: parent.width
                text: "Finds the slate frame in a folder of scans and writes what it says "
                      + "into every image."
            }
            BodyText {
                id: licence
                width: parent.width
                text: "\u00A9 2026 Quillmark authors\nMIT License"
                color: Theme.color.onSurfaceVariant
            }
            Item {
                width: 1
                height: 4
            }
            FilledButton {
                id: closing
                anchors.right: parent.right
                text: "CLOSE"
                onClicked: root.close()

                Accessible.description: title.text + "\n" + versionText.text + "\n" + purpose.text
                                        + "\n" + licence.text
            }
        }
    }
}
