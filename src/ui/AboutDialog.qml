// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Says what the program is.
Dialog {
    id: root

    property string version: Qt.application.version

    name: "About Quillmark"
    contentHeight: texts.height
    start: closing

    Column {
        id: texts
        width: parent.width
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
