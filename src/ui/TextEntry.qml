// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A single line of text to type into. It shows `value` and tells every change with
/// edited(); whoever owns the value sets it. Text that the owner did not take stands until
/// the field is left.
Rectangle {
    id: root

    /// What assistive technology calls the field: its visible label.
    required property string name
    required property string value
    property string placeholder: ""
    /// What assistive technology says of the field beside its name.
    property string description: ""
    property real horizontalPadding: 10
    /// Off while the text is none that the owner takes.
    property bool acceptable: true

    readonly property alias input: input
    readonly property alias text: input.text
    readonly property alias inputFocus: input.activeFocus

    signal edited(string text)

    implicitWidth: 100
    implicitHeight: input.implicitHeight + 16
    baselineOffset: 8 + input.baselineOffset
    color: Theme.color.background
    border.width: 1
    border.color: !root.acceptable ? Theme.color.tertiary
                  : input.activeFocus ? Theme.color.primary
                  : Qt.alpha(Theme.color.outlineVariant, 0.6)

    TextInput {
        id: input
        objectName: "input"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: root.horizontalPadding
        y: 8
        font: Theme.font.body
        color: root.enabled ? Theme.color.onSurface : Theme.color.onSurfaceVariant
        selectionColor: Theme.color.primary
        selectedTextColor: Theme.color.background
        selectByMouse: true
        clip: true
        activeFocusOnTab: true

        onTextChanged: root.edited(input.text)
        onEditingFinished: input.text = root.value

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
