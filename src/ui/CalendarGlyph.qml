// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The sign of a calendar: a sheet with a head and one day marked.
Box {
    id: root

    required property color ink

    implicitWidth: 14
    implicitHeight: 13
    border.width: 1
    border.color: root.ink

    Box {
        width: root.width
        height: 4
        color: root.ink
    }
    Box {
        x: 8
        y: 7
        width: 3
        height: 3
        color: root.ink
    }
}
