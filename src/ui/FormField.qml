// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// A labelled line of a form.
Item {
    id: root

    required property string label
    required property string value
    property alias placeholder: entry.placeholder
    property alias description: entry.description
    readonly property alias input: entry.input

    signal edited(string text)
    /// The user has come to this field.
    signal entered

    implicitWidth: 100 + 12 + entry.implicitWidth
    implicitHeight: entry.implicitHeight

    LabelText {
        anchors.baseline: entry.baseline
        width: 100
        text: root.label
    }

    TextEntry {
        id: entry
        anchors.left: parent.left
        anchors.leftMargin: 112
        anchors.right: parent.right
        name: root.label
        value: root.value
        onEdited: text => root.edited(text)
        onInputFocusChanged: {
            if (entry.inputFocus) {
                root.entered();
            }
        }
    }
}
