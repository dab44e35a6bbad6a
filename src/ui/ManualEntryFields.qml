// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// The form in which the metadata is typed.
ScrollPanel {
    id: root

    required property ManualEntryForm form
    /// What is said of the first field beside its name: where it is.
    property string description: ""
    readonly property alias firstField: make.input
    readonly property alias date: date

    component Field: FormField {
        id: field
        Layout.fillWidth: true
        onEntered: root.reveal(field)
    }

    barOnTab: false
    spacing: 24

    FormSection {
        title: "CAMERA"
        Field { id: make; label: "MAKE *"; description: root.description; value: root.form.cameraMake; onEdited: text => root.form.cameraMake = text }
        Field { label: "MODEL *"; value: root.form.cameraModel; onEdited: text => root.form.cameraModel = text }
    }
    FormSection {
        title: "FILM"
        Field { label: "BRAND *"; value: root.form.filmBrand; onEdited: text => root.form.filmBrand = text }
        Field { label: "STOCK *"; value: root.form.filmStock; onEdited: text => root.form.filmStock = text }
        Field { label: "ISO *"; value: root.form.iso; onEdited: text => root.form.iso = text }
        Field { label: "PUSH/PULL"; placeholder: "0"; value: root.form.pushPull; onEdited: text => root.form.pushPull = text }
    }
    FormSection {
        title: "LENS"
        Field { label: "MAKE"; value: root.form.lensMake; onEdited: text => root.form.lensMake = text }
        Field { label: "MODEL"; value: root.form.lensModel; onEdited: text => root.form.lensModel = text }
        Field { label: "FOCAL (mm)"; value: root.form.focalLength; onEdited: text => root.form.focalLength = text }
    }
    FormSection {
        title: "ROLL"
        Field { label: "PROJECT"; value: root.form.project; onEdited: text => root.form.project = text }
        Field { label: "LOCATION"; value: root.form.location; onEdited: text => root.form.location = text }
        Field { label: "ROLL NAME"; value: root.form.rollName; onEdited: text => root.form.rollName = text }
        DateField {
            id: date
            Layout.fillWidth: true
            form: root.form
            onEntered: root.reveal(date)
        }
        Field { label: "NOTES"; value: root.form.notes; onEdited: text => root.form.notes = text }
    }
    FormSection {
        title: "CREDIT"
        Field { label: "ARTIST"; value: root.form.artist; onEdited: text => root.form.artist = text }
        Field { label: "\u00A9"; value: root.form.copyright; onEdited: text => root.form.copyright = text }
    }
}
