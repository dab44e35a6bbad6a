// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

DropZone {
    id: root

    required property Session session

    // A chooser may still be open when a folder was dropped meanwhile: one scan at a time.
    onPicked: folder => {
        if (root.session.screen === Session.Idle) {
            root.session.openFolder(folder);
        }
    }

    SettingsBar {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        backupMode: root.session.backupMode
        recursive: root.session.recursive
        onBackupModePicked: rawMode => root.session.backupMode = rawMode
        onRecursiveToggled: recursive => root.session.recursive = recursive
    }
}
