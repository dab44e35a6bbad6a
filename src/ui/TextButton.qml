// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

PlainButton {
    id: root

    tracking: 2.5
    textColor: Theme.color.primary

    Box {
        anchors.fill: parent
        anchors.margins: -6
        z: -1
        color: root.stateLayer
    }
}
