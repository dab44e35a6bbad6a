// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Shows which control the keyboard works on: a frame around its parent.
Rectangle {
    required property Item target

    anchors.fill: parent
    anchors.margins: -4
    visible: target.activeFocus
    color: "transparent"
    border.width: 2
    border.color: Theme.color.primary
}
