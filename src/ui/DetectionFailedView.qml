// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// No image of the folder holds a slate: offers the ways on.
ColumnLayout {
    id: root

    required property string folderName
    required property url folder
    required property real triedCount

    signal cancelled
    signal slatePicked(url image)
    signal manualEntryChosen

    spacing: 24

    Keys.onEscapePressed: root.cancelled()

    StepText {
        id: step
        text: "02 / SLATE NOT FOUND"
        color: Theme.color.tertiary
    }
    HeadlineText {
        id: headline
        Layout.fillWidth: true
        text: "NO READABLE SLATE\nIN " + root.folderName
        tracking: -0.5
        maximumLineCount: 3
    }
    BodyText {
        Layout.fillWidth: true
        text: "Tried " + root.triedCount + " image" + (root.triedCount === 1 ? "" : "s")
              + " \u2014 none contained a decodable Quillmark QR. Pick the slate frame yourself, "
              + "or skip the slate and enter the metadata manually."
        color: Theme.color.onSurfaceVariant
    }
    Item {
        Layout.fillHeight: true
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
        OutlinedButton {
            text: "PICK SLATE FRAME"
            onClicked: chooser.open()
        }
        FilledButton {
            text: "ENTER MANUALLY  \u2192"
            focus: true
            onClicked: root.manualEntryChosen()

            Accessible.description: step.text + "\n" + headline.text
        }
    }

    FileChooser {
        id: chooser
        kind: FileChooser.Picture
        acceptLabel: "Use as slate"
        startFolder: root.folder
        parentWindow: root.Window.window
        onChosen: location => root.slatePicked(location)
    }
}
