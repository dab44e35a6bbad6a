// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// Why there is no update, in words that can be copied.
DialogContent {
    id: root

    required property string message

    start: button

    TitleText {
        id: heading
        Layout.fillWidth: true
        text: "The update failed"
        color: Theme.color.tertiary
    }
    ScrollPanel {
        id: panel
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 0
        Layout.maximumHeight: implicitHeight
        padding: 16

        SelectableText {
            id: words
            Layout.fillWidth: true
            text: root.message
            onCursorRectangleChanged: panel.revealRow(
                words.y + words.cursorRectangle.y, words.cursorRectangle.height)
        }
    }
    FilledButton {
        id: button
        Layout.topMargin: 4
        text: "CLOSE"
        onClicked: root.closed()

        Accessible.description: heading.text + "\n" + root.message
    }
}
