// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A switch, with its label beside it unless that is empty. The switch shows `checked` and
/// asks for the other position with toggled(); whoever owns the value sets it.
Item {
    id: root

    property alias label: text.text
    /// What assistive technology calls the switch.
    property string name: root.label
    required property bool checked

    signal toggled(bool checked)

    implicitWidth: track.width + (text.visible ? text.anchors.leftMargin + text.implicitWidth : 0)
    implicitHeight: Math.max(track.height, text.implicitHeight)
    activeFocusOnTab: true

    Accessible.role: Accessible.CheckBox
    Accessible.name: root.name
    Accessible.focusable: true
    Accessible.checkable: true
    Accessible.checked: root.checked
    Accessible.onPressAction: root.toggle()
    Accessible.onToggleAction: root.toggle()

    Keys.onSpacePressed: root.toggle()
    Keys.onReturnPressed: root.toggle()
    Keys.onEnterPressed: root.toggle()

    function toggle(): void {
        if (root.enabled) {
            root.toggled(!root.checked);
        }
    }

    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.toggle()
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
        id: text
        anchors.left: track.right
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: text.text.length > 0
        wrapMode: Text.WordWrap
        Accessible.ignored: true
    }
}
