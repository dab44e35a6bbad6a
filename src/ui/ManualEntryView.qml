// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// The form for a roll whose slate could not be read.
ColumnLayout {
    id: root

    required property string folderName
    required property url folder
    /// The frame that the user picked as the slate; empty for none.
    required property url initialSlateImage
    property url slateImage: root.initialSlateImage

    signal cancelled
    signal submitted(ManualEntryForm form)

    /// Not while the date says one thing and the draft another: a press on the button leaves the
    /// keyboard, and with it what is typed, in the field.
    function submitDraft(): void {
        if (fields.date.acceptable) {
            root.submitted(form);
        } else {
            fields.date.correct();
        }
    }

    spacing: 24

    Keys.onEscapePressed: root.cancelled()

    Component.onCompleted: {
        form.prefillFromLastUsed();
        (form.isValid ? submit : fields.firstField).focus = true;
    }

    ManualEntryForm {
        id: form
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 6

        StepText {
            id: step
            text: "02 / MANUAL ENTRY"
            color: Theme.color.secondary
        }
        TitleText {
            Layout.fillWidth: true
            text: root.folderName
        }
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 0
        spacing: 24

        ManualEntryFields {
            id: fields
            Layout.fillWidth: true
            Layout.fillHeight: true
            form: form
            description: submit.Accessible.description
        }
        SlatePhotoPane {
            Layout.minimumWidth: 360
            Layout.maximumWidth: 360
            Layout.fillHeight: true
            slateImage: root.slateImage
            onPickRequested: chooser.open()
        }
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 16

        OutlinedButton {
            text: "CANCEL"
            textColor: Theme.color.onSurfaceVariant
            onClicked: root.cancelled()
        }
        Item {
            Layout.fillWidth: true
        }
        FilledButton {
            id: submit
            text: "EMBED METADATA  \u2192"
            enabled: form.isValid
            onClicked: root.submitDraft()

            Accessible.description: step.text + "\n" + root.folderName
        }
    }

    FileChooser {
        id: chooser
        kind: FileChooser.Picture
        acceptLabel: "Use as slate"
        startFolder: root.folder
        parentWindow: root.Window.window
        onChosen: location => root.slateImage = location
    }
}
