// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// The plan that waits for confirmation.
ColumnLayout {
    id: root

    required property string folderName
    required property string slateName
    required property var rows
    required property int imageCount
    required property string backupMode

    signal cancelled
    signal confirmed

    spacing: 24

    Keys.onEscapePressed: root.cancelled()

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 8

        StepText {
            id: step
            text: "02 / SLATE DETECTED"
            color: Theme.color.secondary
        }
        HeadlineText {
            Layout.fillWidth: true
            text: root.folderName
            tracking: -0.5
        }
        MonoText {
            Layout.fillWidth: true
            text: root.slateName
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 0
        Layout.maximumHeight: Infinity
        spacing: 32

        PayloadInspector {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.maximumHeight: implicitHeight
            Layout.alignment: Qt.AlignTop
            rows: root.rows
        }
        SummaryPanel {
            Layout.minimumWidth: 240
            Layout.maximumWidth: 240
            Layout.fillHeight: true
            Layout.maximumHeight: implicitHeight
            Layout.alignment: Qt.AlignTop
            imageCount: root.imageCount
            backupMode: root.backupMode
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 16

        OutlinedButton {
            text: "CANCEL"
            textColor: Theme.color.onSurfaceVariant
            onClicked: root.cancelled()
        }
        Item {
            Layout.fillWidth: true
        }
        FilledButton {
            text: "EMBED METADATA  \u2192"
            focus: true
            onClicked: root.confirmed()

            Accessible.description: step.text + "\n" + root.folderName + "\n"
                                    + root.slateName
        }
    }
}
