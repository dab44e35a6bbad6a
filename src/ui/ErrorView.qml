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
        text: "ERROR"
        color: Theme.color.tertiary
    }
    HeadlineText {
        Layout.fillWidth: true
        text: "INGESTION FAILED"
    }
    ScrollPanel {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 0
        Layout.maximumHeight: implicitHeight
        padding: 16

        MonoText {
            Layout.fillWidth: true
            text: root.message
            wrapMode: Text.Wrap
        }
    }
    Item {
        Layout.fillHeight: true
        Layout.preferredHeight: 0
    }
    FilledButton {
        text: "TRY AGAIN"
        onClicked: root.reset()
    }
}
