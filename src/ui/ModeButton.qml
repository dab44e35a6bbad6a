// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// One of the choices of a segmented strip.
PlainButton {
    id: root

    required checked

    kind: Control.Choice
    // One stop for the whole strip. Where the keyboard already is, it may not be forbidden.
    activeFocusOnTab: root.checked || root.activeFocus
    tracking: 2.5
    horizontalPadding: 14
    verticalPadding: 10
    wrapMode: Text.WordWrap
    textColor: root.checked ? Theme.color.background : Theme.color.onSurface
    contentColor: root.textColor
    // A focused button's frame lies over its neighbours.
    z: root.activeFocus ? 1 : 0

    Accessible.role: Accessible.RadioButton

    Box {
        anchors.fill: parent
        z: -1
        color: Qt.tint(root.checked ? Theme.color.primary : Theme.color.surfaceContainer,
                       root.stateLayer)
    }
}
