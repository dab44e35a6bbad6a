// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// Where every failure ends, in its own words.
ColumnLayout {
    id: root

    required property string message

    signal reset

    spacing: 20

    StepText {
        id: step
        text: "ERROR"
        color: Theme.color.tertiary
    }
    HeadlineText {
        id: headline
        Layout.fillWidth: true
        text: "INGESTION FAILED"
    }
    ScrollPanel {
        id: panel
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 0
        Layout.maximumHeight: implicitHeight
        padding: 16

        SelectableText {
            id: message
            Layout.fillWidth: true
            text: root.message
            onCursorRectangleChanged: panel.revealRow(
                message.y + message.cursorRectangle.y, message.cursorRectangle.height)
        }
    }
    Item {
        Layout.fillHeight: true
        Layout.preferredHeight: 0
    }
    FilledButton {
        text: "TRY AGAIN"
        focus: true
        onClicked: root.reset()

        Accessible.description: step.text + "\n" + headline.text + "\n" + root.message
    }
}
