// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Owns the session and shows the screen of its state.
Item {
    id: root

    readonly property bool writing: vm.writing
    readonly property alias idle: idleScreen.visible

    /// A run is over, whether it wrote or not.
    signal runEnded(bool failed)
    /// Another screen is shown. It may have the keyboard with takeFocus().
    signal screenShown

    /// Lets the keyboard come to the main action of the screen.
    function takeFocus(): void {
        if (root.idle) {
            idleScreen.startOver();
        } else {
            loader.focus = true;
        }
    }
    /// Opens the chooser for the folder, on the idle screen.
    function chooseFolder(): void {
        idleScreen.choose();
    }

    onWritingChanged: {
        if (!root.writing) {
            root.runEnded(vm.screen === Session.Error);
        }
    }

    Session {
        id: vm
    }

    IdleScreen {
        id: idleScreen
        anchors.fill: parent
        anchors.margins: 40
        // As soon as the other screen has gone, and no sooner.
        visible: loader.status === Loader.Null
        enabled: visible // an item that is only hidden keeps the keyboard's focus
        focus: true
        session: vm
    }

    // By file, so that no other screen costs anything before it is shown. Each screen gives
    // the focus to its main action, and the loader is the scope of that.
    Loader {
        id: loader

        readonly property url file:
            vm.screen === Session.Idle ? "" : vm.screenName + "Screen.qml"

        anchors.fill: parent
        anchors.margins: 40
        onFileChanged: {
            loader.setSource(loader.file, {session: vm});
            root.screenShown();
        }
        onStatusChanged: {
            if (loader.status === Loader.Error) {
                Qt.exit(1);
            }
        }
    }
}
