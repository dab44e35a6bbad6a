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
    contentColor: Theme.color.background
    opacity: 1.0 // disabled, it has colours of its own
    textColor: root.enabled ? Theme.color.background : Theme.color.onSurfaceVariant

    Box {
        anchors.fill: parent
        z: -1
        color: root.enabled ? Qt.tint(Theme.color.primary, root.stateLayer)
                            : Theme.color.surfaceContainer
    }
}
