// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

PlainButton {
    id: root

    horizontalPadding: 24
    verticalPadding: 14
    textColor: Theme.color.onSurface

    Box {
        anchors.fill: parent
        z: -1
        color: root.stateLayer
        border.width: 1
        border.color: Theme.color.outlineVariant
    }
}
