// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// What may be set before a folder is chosen.
Column {
    id: root

    required property string backupMode
    required property bool recursive

    signal backupModePicked(string rawMode)
    signal recursiveToggled(bool recursive)

    spacing: 16

    Divider {
        width: root.width
    }

    ShrinkingRow {
        id: row
        width: root.width
        spacing: 32

        BackupModePicker {
            id: modes
            width: row.widthOf(modes)
            anchors.verticalCenter: parent.verticalCenter
            selection: root.backupMode
            onPicked: rawMode => root.backupModePicked(rawMode)
        }
        ToggleSwitch {
            id: recursion
            width: row.widthOf(recursion)
            anchors.verticalCenter: parent.verticalCenter
            text: "RECURSE INTO SUBFOLDERS"
            checked: root.recursive
            onToggled: checked => root.recursiveToggled(checked)
        }
    }
}
