// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// One day in a calendar.
Control {
    id: root

    required property int index
    required property string day
    required property string number
    required property string name
    required property bool inMonth
    required property bool isToday
    required property bool isChosen

    kind: Control.Day
    text: root.name
    checked: root.isChosen
    enabled: root.day.length > 0
    activeFocusOnTab: false // the arrow keys go from day to day

    implicitWidth: 32
    implicitHeight: 32

    Accessible.role: Accessible.Cell
    Accessible.ignored: !root.visible || !root.enabled

    Box {
        readonly property color stateLayer:
            Theme.stateLayer(root.isChosen ? Theme.color.background : Theme.color.onSurface,
                             root.pointedAt, root.pressed)

        anchors.fill: parent
        color: root.isChosen ? Qt.tint(Theme.color.primary, stateLayer) : stateLayer
        border.width: root.isToday ? 1 : 0
        border.color: root.isChosen ? Theme.color.background : Theme.color.primary
    }
    StyledText {
        anchors.centerIn: parent
        text: root.number
        color: root.isChosen ? Theme.color.background
               : root.inMonth ? Theme.color.onSurface
               : Qt.alpha(Theme.color.onSurfaceVariant, 0.6)
        Accessible.ignored: true
    }
    FocusRing {
        target: root
        anchors.margins: 0
    }
}
