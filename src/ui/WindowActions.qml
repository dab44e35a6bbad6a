// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// What the window's menu asks of the window.
QtObject {
    /// Whether updates can be looked for now.
    property bool canCheckForUpdates: false

    signal aboutRequested
    signal updateCheckRequested
    signal quitRequested
}
