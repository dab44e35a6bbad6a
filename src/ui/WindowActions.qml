// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// What the window's menu asks of the window.
QtObject {
    /// What looks for updates; null where nothing does.
    property Updater updater: null

    signal aboutRequested
    signal quitRequested
}
