// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Shows which control the keyboard works on, to whoever works with it: a frame around its
/// parent, which exists only while it shows.
Loader {
    id: root

    required property Item target

    anchors.fill: parent
    anchors.margins: -4
    active: Keyboard.inUse && root.target.activeFocus
    source: "FocusFrame.qml"
}
