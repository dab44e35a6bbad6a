// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

/// Opens the updater's dialog when there is something to show.
OverlayLoader {
    id: root

    /// Null where nothing looks for updates.
    required property Updater updater
    /// Whether a dialog that nobody asked for would be in nobody's way.
    required property bool welcome

    readonly property bool due: root.updater !== null && root.updater.windowWanted
                                && (root.updater.userInitiated || root.welcome)

    file: "UpdateDialog.qml"
    properties: ({updater: root.updater})

    onDueChanged: {
        if (root.due && !root.shown) {
            root.open();
        }
    }
}
