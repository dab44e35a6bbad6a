// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// An overlay that is made when it is first opened.
Loader {
    id: root

    required property string file
    /// What the overlay is made with.
    property var properties: ({})

    readonly property Overlay overlay: root.item as Overlay
    readonly property bool shown: root.overlay !== null && root.overlay.visible

    signal focusLost

    function open(): void {
        if (root.status === Loader.Null) {
            root.setSource(root.file, root.properties);
        }
        root.overlay.open();
    }
    function close(): void {
        if (root.shown) {
            root.overlay.close();
        }
    }
    /// Lets the keyboard go to something new when the overlay closes.
    function forgetReturn(): void {
        if (root.shown) {
            root.overlay.returnTo = null;
        }
    }

    Connections {
        target: root.overlay

        function onFocusLost(): void {
            root.focusLost();
        }
    }
}
