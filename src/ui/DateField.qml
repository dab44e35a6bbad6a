// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The row of the shooting date: whether there is one, and which day.
Item {
    id: root

    required property ManualEntryForm form

    signal entered

    implicitWidth: 30 + 8 + 90 + 8 + entry.implicitWidth
    implicitHeight: entry.implicitHeight

    ToggleSwitch {
        id: include
        anchors.verticalCenter: parent.verticalCenter
        text: "DATE"
        textVisible: false
        checked: root.form.includeDate
        onToggled: checked => root.form.includeDate = checked
        onActiveFocusChanged: {
            if (include.activeFocus) {
                root.entered();
            }
        }
    }
    LabelText {
        anchors.verticalCenter: parent.verticalCenter
        x: include.width + 8
        width: 90
        text: "DATE"
    }
    TextEntry {
        id: entry
        anchors.right: parent.right
        anchors.left: include.right
        anchors.leftMargin: 106
        horizontalPadding: 4
        enabled: root.form.includeDate
        name: "DATE"
        value: root.form.dateText
        acceptable: entry.text === root.form.dateText
        onEdited: text => root.form.setDateText(text)
        onInputFocusChanged: {
            if (entry.inputFocus) {
                root.entered();
            }
        }
    }
}
