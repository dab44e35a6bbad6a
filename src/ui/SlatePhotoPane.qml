// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// The slate frame beside the form, for the user's eyes only.
ColumnLayout {
    id: root

    /// Empty while no frame is attached.
    required property url slateImage

    signal pickRequested

    spacing: 12

    FileNameText {
        id: slateName
        file: root.slateImage
    }

    PanelTitle {
        text: "SLATE REFERENCE"
    }
    Box {
        Layout.fillWidth: true
        Layout.fillHeight: true
        color: Theme.color.surfaceContainerLow
        border.width: 1
        border.color: Theme.color.outlineVariant

        ReferencePhoto {
            id: photo
            anchors.fill: parent
            anchors.margins: 8
            source: root.slateImage
        }

        Column {
            anchors.centerIn: parent
            visible: photo.empty
            spacing: 14

            LabelText {
                anchors.horizontalCenter: parent.horizontalCenter
                text: "NO SLATE PHOTO ATTACHED"
            }
            OutlinedButton {
                anchors.horizontalCenter: parent.horizontalCenter
                text: "ATTACH SLATE PHOTO"
                horizontalPadding: 20
                verticalPadding: 12
                onClicked: root.pickRequested()
            }
        }
    }
    RowLayout {
        Layout.fillWidth: true
        visible: slateName.text.length > 0
        spacing: 12

        MonoText {
            Layout.fillWidth: true
            text: slateName.text
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }
        TextButton {
            text: "CHANGE"
            onClicked: root.pickRequested()
        }
    }
}
