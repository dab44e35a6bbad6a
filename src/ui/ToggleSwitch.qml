// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A switch with its text beside it. It shows `checked` and asks for the other position with
/// toggled(); whoever owns the value sets it.
Control {
    id: root

    required text
    required checked
    /// Off where the text stands elsewhere.
    property bool textVisible: true

    signal toggled(bool checked)

    kind: Control.Switch
    onClicked: root.toggled(!root.checked)

    opacity: root.enabled ? 1.0 : Theme.disabledOpacity
    implicitWidth: track.width
                   + (label.visible ? label.anchors.leftMargin + Math.ceil(label.implicitWidth) : 0)
    implicitHeight: Math.max(track.height, label.implicitHeight)

    Accessible.role: Accessible.CheckBox
    Accessible.ignored: !root.visible

    Pill {
        id: track
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        height: 18
        color: Qt.tint(root.checked ? Theme.color.primary : Theme.color.outlineVariant,
                       Theme.stateLayer(root.checked ? Theme.color.background
                                                     : Theme.color.onSurface,
                                        root.pointedAt, root.pressed))

        Pill {
            anchors.verticalCenter: parent.verticalCenter
            x: root.checked ? track.width - width - 2 : 2
            width: 14
            height: 14
            color: root.checked ? Theme.color.background : Theme.color.onSurface
        }
    }

    LabelText {
        id: label
        anchors.left: track.right
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: root.textVisible
        text: root.text
        wrapMode: Text.WordWrap
        Accessible.ignored: true
    }

    FocusRing {
        target: root
    }
}
