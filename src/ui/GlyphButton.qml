// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A small square button that shows a sign; its text is what assistive technology calls it.
Control {
    id: root

    required text
    property alias glyph: sign.text
    readonly property color ink: Theme.color.onSurfaceVariant

    implicitWidth: 28
    implicitHeight: 28
    opacity: root.enabled ? 1.0 : Theme.disabledOpacity

    Accessible.role: Accessible.Button
    Accessible.ignored: !root.visible

    Box {
        anchors.fill: parent
        color: Theme.stateLayer(Theme.color.onSurface, root.pointedAt, root.pressed)
    }
    StyledText {
        id: sign
        anchors.centerIn: parent
        color: root.ink
        Accessible.ignored: true
    }
    FocusRing {
        target: root
        anchors.margins: 0
    }
}
