// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Owns the session and shows the screen of its state.
Item {
    id: root

    readonly property bool writing: session.screen === Session.Writing

    /// A run that wrote is over.
    signal runEnded(bool failed)

    onWritingChanged: {
        if (!root.writing) {
            root.runEnded(session.screen === Session.Error);
        }
    }

    Session {
        id: session
    }

    // By file, so that no screen costs anything before it is shown.
    Loader {
        id: loader

        readonly property url file: session.screenName + "Screen.qml"

        anchors.fill: parent
        anchors.margins: 40
        onFileChanged: loader.show()
        onStatusChanged: {
            if (loader.status === Loader.Error) {
                Qt.exit(1);
            }
        }
        Component.onCompleted: loader.show()

        function show(): void {
            loader.setSource(loader.file, {session: session});
        }
    }
}
