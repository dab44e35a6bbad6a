// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The button that goes on; grey while disabled.
PlainButton {
    id: root

    horizontalPadding: 28
    verticalPadding: 14
    textColor: root.enabled ? Theme.color.background : Theme.color.onSurfaceVariant

    Rectangle {
        anchors.fill: parent
        z: -1
        color: root.enabled ? Theme.color.primary : Theme.color.surfaceContainer
    }
}
