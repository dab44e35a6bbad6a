// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The row of the shooting date: whether there is one, and which day. Where the picker has
/// too little room in the row, it stands below.
Item {
    id: root

    required property ManualEntryForm form

    readonly property bool narrow: root.width < entry.rowX + entry.implicitWidth
    /// Off while there is to be a date and what is typed is no day.
    readonly property bool acceptable: !root.form.includeDate || entry.acceptable
    readonly property real headHeight: Math.max(include.height, label.height)

    signal entered

    /// Brings the keyboard to what is typed, for it to be typed anew.
    function correct(): void {
        entry.takeFocus();
        entry.input.selectAll();
        root.entered();
    }

    implicitWidth: entry.rowX + entry.implicitWidth
    implicitHeight: root.narrow ? root.headHeight + 8 + entry.height : entry.height

    ToggleSwitch {
        id: include
        y: ((root.narrow ? root.headHeight : root.height) - include.height) / 2
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
        id: label
        x: include.width + 8
        y: ((root.narrow ? root.headHeight : root.height) - label.height) / 2
        width: 90
        text: "DATE"
    }
    DatePicker {
        id: entry

        readonly property real rowX: label.x + label.width + 8

        x: root.narrow ? label.x : entry.rowX
        y: root.narrow ? root.headHeight + 8 : 0
        width: root.width - entry.x
        enabled: root.form.includeDate
        name: "DATE"
        value: root.form.dateText
        acceptable: entry.text === root.form.dateText
        description: root.acceptable ? "" : "Type a day as yyyy-MM-dd"
        onEdited: text => root.form.setDateText(text)
        onPicked: day => root.form.setDateText(day)
        onOpening: root.entered()
        onInputFocusChanged: {
            if (entry.inputFocus) {
                root.entered();
            }
        }
    }
}
