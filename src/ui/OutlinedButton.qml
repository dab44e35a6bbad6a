// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

PlainButton {
    horizontalPadding: 24
    verticalPadding: 14
    textColor: Theme.color.onSurface

    Rectangle {
        anchors.fill: parent
        z: -1
        color: "transparent"
        border.width: 1
        border.color: Theme.color.outlineVariant
    }
}
