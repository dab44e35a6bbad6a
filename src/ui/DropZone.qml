// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The idle screen: takes a folder by drag and drop or from a chooser.
FocusScope {
    id: root

    readonly property alias hovered: drop.hovered

    signal picked(url folder)

    /// Gives the focus to the main action, wherever it was on this screen.
    function startOver(): void {
        button.focus = true;
        root.focus = true;
    }
    /// Opens the chooser.
    function choose(): void {
        chooser.open();
    }

    // Its question is answered once another screen is shown.
    onEnabledChanged: {
        if (!root.enabled) {
            chooser.close();
        }
    }

    Box {
        anchors.fill: parent
        color: root.hovered ? Theme.color.surfaceContainer : Theme.color.surfaceContainerLow
        border.width: root.hovered ? 2 : 1
        border.color: root.hovered ? Theme.color.primary : Theme.color.outlineVariant
    }

    Column {
        anchors.centerIn: parent
        width: parent.width
        spacing: 24

        StepText {
            id: step
            anchors.horizontalCenter: parent.horizontalCenter
            text: "01 / INGEST A ROLL"
            color: Theme.color.primary
        }
        HeadlineText {
            id: headline
            width: parent.width
            text: "DROP A FOLDER\nOF SCANS"
            horizontalAlignment: Text.AlignHCenter
            lineHeightMode: Text.FixedHeight
            lineHeight: metrics.lineSpacing + 2

            FontMetrics {
                id: metrics
                font: Theme.font.headline
            }
        }
        BodyText {
            width: parent.width
            text: "Quillmark finds the slate frame, decodes the QR, and embeds the\n"
                  + "metadata directly into every image \u2014 EXIF, IPTC, and XMP."
            color: Theme.color.onSurfaceVariant
            horizontalAlignment: Text.AlignHCenter
        }
        FilledButton {
            id: button
            anchors.horizontalCenter: parent.horizontalCenter
            text: "CHOOSE FOLDER"
            horizontalPadding: 32
            verticalPadding: 16
            focus: true
            onClicked: root.choose()

            Accessible.description: step.text + "\n" + headline.text
        }
    }

    LocationDrop {
        id: drop
        anchors.fill: parent
        onDropped: location => root.picked(location)
    }

    FileChooser {
        id: chooser
        kind: FileChooser.Folder
        acceptLabel: "Ingest"
        parentWindow: root.Window.window
        onChosen: location => root.picked(location)
    }
}
