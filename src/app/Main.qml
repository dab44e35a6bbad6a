// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The one window: a menu bar, and the content below it.
///
/// Closed while a run writes, it only hides: the program ends when the run is over, and a
/// roll is never left half written. A run that fails meanwhile brings the window back, so
/// that nobody takes it for a success.
Window {
    id: root

    /// Null where nothing looks for updates.
    property UpdaterCoordinator updates: null

    readonly property Updater updater: root.updates?.controller.updater ?? null
    readonly property bool dialogShown: about.shown || update.shown
    readonly property bool covered: menu.shown || root.dialogShown

    title: "Quillmark"
    width: 1000
    height: 700 + bar.height
    minimumWidth: 720
    minimumHeight: 560 + bar.height
    visible: true
    color: Theme.color.background

    onClosing: close => {
        close.accepted = !content.writing;
        if (content.writing) {
            root.hide();
        } else {
            Qt.exit(0);
        }
    }

    onActiveChanged: {
        if (!root.active) {
            menu.close();
        }
    }

    FocusKeeper {
        activeItem: root.activeFocusItem
        within: content
        // A window counts as active while a dialog that belongs to it is.
        active: root.active && !root.covered && !modal.blocked
        onNowhereToGo: content.takeFocus()
    }

    ModalState {
        id: modal
        window: root
    }

    // What the first drop shows, and its plan.
    Preloader {
        window: root
        files: ["ScanningScreen.qml", "ReadyScreen.qml"]
    }

    WindowActions {
        id: actions
        updater: root.updater
        onAboutRequested: about.open()
        onQuitRequested: root.close()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]
        onActivated: root.close()
    }
    Shortcut {
        sequences: ["Ctrl+O"]
        enabled: content.idle && !root.covered
        onActivated: content.chooseFolder()
    }
    Shortcut {
        sequences: ["F10", "Alt+Q"]
        enabled: bar.enabled
        onActivated: menu.shown ? menu.close() : menu.open()
    }

    MenuBar {
        id: bar
        objectName: "menuBar"
        width: root.width
        enabled: !root.dialogShown && !modal.blocked
        text: "Quillmark"
        open: menu.shown
        onOpened: menu.open()
    }

    ContentView {
        id: content
        anchors.top: bar.bottom
        anchors.bottom: parent.bottom
        width: root.width
        enabled: !root.dialogShown
        onScreenShown: {
            menu.forgetReturn();
            menu.close();
            about.forgetReturn();
            update.forgetReturn();
            if (!root.dialogShown) {
                content.takeFocus();
            }
        }
        onRunEnded: failed => {
            if (root.visible) {
                return;
            }
            if (failed) {
                root.visible = true;
                root.raise();
                root.requestActivate();
            } else {
                Qt.exit(0);
            }
        }
    }

    OverlayLoader {
        id: menu
        anchors.fill: parent
        file: "WindowMenu.qml"
        properties: ({actions: actions, topEdge: bar.height})
        onFocusLost: content.takeFocus()
    }
    OverlayLoader {
        id: about
        anchors.fill: parent
        file: "AboutDialog.qml"
        onFocusLost: content.takeFocus()
    }
    UpdateOpener {
        id: update
        anchors.fill: parent
        updater: root.updater
        welcome: root.visible && content.idle && !menu.shown && !about.shown && !modal.blocked
        onFocusLost: content.takeFocus()
    }
}
