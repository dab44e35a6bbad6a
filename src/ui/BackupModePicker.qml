// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// The choice of the backup mode, by raw value.
RowLayout {
    id: root

    required property string selection

    signal picked(string rawMode)

    spacing: 32

    LabelText {
        id: caption
        Layout.fillWidth: true
        Layout.minimumWidth: Math.ceil(Theme.widestWord(caption.text, caption.font))
        Layout.maximumWidth: Math.ceil(implicitWidth)
        text: "BACKUP MODE"
        wrapMode: Text.WordWrap
    }

    RowLayout {
        spacing: 0

        Repeater {
            model: ["backup-originals", "write-copies", "none"]

            ModeButton {
                id: button
                required property string modelData

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.minimumWidth: minimumWidth
                Layout.maximumWidth: implicitWidth
                text: mode.title
                checked: root.selection === button.modelData
                onClicked: root.picked(button.modelData)

                BackupModeText {
                    id: mode
                    rawValue: button.modelData
                }
            }
        }
    }
}
