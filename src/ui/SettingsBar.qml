// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// What may be set before a folder is chosen.
ColumnLayout {
    id: root

    required property string backupMode
    required property bool recursive

    signal backupModePicked(string rawMode)
    signal recursiveToggled(bool recursive)

    spacing: 16

    Divider {
        Layout.fillWidth: true
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 32

        BackupModePicker {
            Layout.fillWidth: true
            Layout.maximumWidth: Math.ceil(implicitWidth)
            selection: root.backupMode
            onPicked: rawMode => root.backupModePicked(rawMode)
        }
        ToggleSwitch {
            Layout.fillWidth: true
            Layout.minimumWidth: minimumWidth
            Layout.maximumWidth: Math.ceil(implicitWidth)
            text: "RECURSE INTO SUBFOLDERS"
            checked: root.recursive
            onToggled: checked => root.recursiveToggled(checked)
        }
        Item {
            Layout.fillWidth: true
        }
    }
}
