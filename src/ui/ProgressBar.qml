// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// How much of something is done, from 0 to 1.
Box {
    id: root

    required property real value
    /// What assistive technology calls it.
    required property string name

    readonly property real minimumValue: 0
    readonly property real maximumValue: 1

    implicitHeight: 6
    color: Theme.color.outlineVariant

    Accessible.role: Accessible.ProgressBar
    Accessible.name: root.name
    Accessible.description: Math.floor(100 * root.value) + " %"
    Accessible.ignored: !root.visible

    Box {
        objectName: "done"
        width: Math.max(0, Math.min(1, root.value)) * root.width
        height: root.height
        color: Theme.color.primary
    }
}
