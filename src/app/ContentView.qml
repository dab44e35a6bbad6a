// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Owns the session and shows the screen of its state.
Item {
    id: root

    readonly property bool writing: vm.writing

    /// A run is over, whether it wrote or not.
    signal runEnded(bool failed)

    onWritingChanged: {
        if (!root.writing) {
            root.runEnded(vm.screen === Session.Error);
        }
    }

    Session {
        id: vm
    }

    IdleScreen {
        anchors.fill: parent
        anchors.margins: 40
        visible: vm.screen === Session.Idle
        enabled: visible // an item that is only hidden keeps the keyboard's focus
        session: vm
    }

    // By file, so that no other screen costs anything before it is shown.
    Loader {
        id: loader

        readonly property url file:
            vm.screen === Session.Idle ? "" : vm.screenName + "Screen.qml"

        anchors.fill: parent
        anchors.margins: 40
        onFileChanged: loader.setSource(loader.file, {session: vm})
        onStatusChanged: {
            if (loader.status === Loader.Error) {
                Qt.exit(1);
            }
        }
    }
}
