// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A single line of text to type into. It shows `value` and tells every change with
/// edited(); whoever owns the value sets it. Text that the owner did not take stands until
/// the field is left.
Box {
    id: root

    /// What assistive technology calls the field: its visible label.
    required property string name
    required property string value
    property string placeholder: ""
    /// What assistive technology says of the field beside its name.
    property string description: ""
    property real horizontalPadding: 10
    /// Room at the end for something else.
    property real trailing: 0
    /// Off while the text is none that the owner takes.
    property bool acceptable: true

    readonly property alias input: input
    readonly property alias text: input.text
    readonly property alias inputFocus: input.activeFocus
    /// Whether the field shows that what is typed goes into it.
    readonly property bool marked: input.activeFocus && (Keyboard.inUse || root.pointedInto)
    property bool pointedInto: false

    signal edited(string text)

    function takeFocus(): void {
        input.forceActiveFocus();
    }

    implicitWidth: 100
    implicitHeight: input.implicitHeight + 16
    baselineOffset: 8 + input.baselineOffset
    opacity: root.enabled ? 1.0 : Theme.disabledOpacity
    color: Theme.color.background
    border.width: root.marked ? 2 : 1
    border.color: !root.acceptable ? Theme.color.tertiary
                  : root.marked ? Theme.color.primary
                  : hover.hovered ? Theme.color.onSurfaceVariant
                  : Qt.alpha(Theme.color.outlineVariant, 0.6)

    HoverHandler {
        id: hover
        cursorShape: Qt.IBeamCursor
    }
    // Beside the text; on it, the input takes the press.
    TapHandler {
        onPressedChanged: {
            if (pressed) {
                root.pointedInto = true;
                input.forceActiveFocus(Qt.MouseFocusReason);
            }
        }
    }

    TextInput {
        id: input
        objectName: "input"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: root.horizontalPadding
        anchors.rightMargin: root.horizontalPadding + root.trailing
        y: 8
        font: Theme.font.body
        color: root.enabled ? Theme.color.onSurface : Theme.color.onSurfaceVariant
        selectionColor: Theme.color.primary
        selectedTextColor: Theme.color.background
        selectByMouse: true
        clip: true
        activeFocusOnTab: true

        onActiveFocusChanged: root.pointedInto = root.pointedInto && input.activeFocus
        onTextChanged: root.edited(input.text)
        onEditingFinished: input.text = root.value

        PointHandler {
            onActiveChanged: root.pointedInto = root.pointedInto || active
        }

        Accessible.role: Accessible.EditableText
        Accessible.name: root.name
        Accessible.description: root.description
        Accessible.ignored: !root.visible
    }

    // Not a binding of the property, which an assignment would end.
    Binding {
        target: input
        property: "text"
        value: root.value
        restoreMode: Binding.RestoreNone
    }

    StyledText {
        x: root.horizontalPadding
        y: 8
        visible: input.text.length === 0 && root.placeholder.length > 0
        text: root.placeholder
        color: Theme.color.onSurfaceVariant
    }
}
