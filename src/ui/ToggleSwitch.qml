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

    /// What keeps every word of the text whole.
    readonly property real minimumWidth: track.width + label.anchors.leftMargin
        + Math.ceil(Theme.widestWord(root.text, label.font))

    signal toggled(bool checked)

    kind: Control.Switch
    onClicked: root.toggled(!root.checked)

    implicitWidth: track.width
                   + (label.visible ? label.anchors.leftMargin + label.implicitWidth : 0)
    implicitHeight: Math.max(track.height, label.implicitHeight)

    Accessible.role: Accessible.CheckBox
    Accessible.ignored: !root.visible

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.press()
    }

    Rectangle {
        id: track
        anchors.verticalCenter: parent.verticalCenter
        width: 30
        height: 18
        radius: 9
        color: root.checked ? Theme.color.primary : Theme.color.outlineVariant

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            x: root.checked ? track.width - width - 2 : 2
            width: 14
            height: 14
            radius: 7
            color: root.checked ? Theme.color.background : Theme.color.onSurface
        }

        FocusRing {
            target: root
            radius: 13
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
}
