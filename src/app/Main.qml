// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The one window.
///
/// Closed while a run writes, it only hides: the program ends when the run is over, and a
/// roll is never left half written. A run that fails meanwhile brings the window back, so
/// that nobody takes it for a success.
Window {
    id: root

    title: "Quillmark"
    width: 1000
    height: 700
    minimumWidth: 720
    minimumHeight: 560
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

    ContentView {
        id: content
        anchors.fill: parent
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
}
