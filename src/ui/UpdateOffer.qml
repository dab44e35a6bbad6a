// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// There is a new version: what is new in it, and what the user may do about it.
DialogContent {
    id: root

    required property string newVersion
    required property string currentVersion
    required property var notes
    /// Whether the user asked for it. Where it comes unasked, a key that was meant for something
    /// else is not to install anything.
    property bool asked: true

    signal installed
    signal skipped
    signal linkPressed(url address)

    start: root.asked ? install : later

    TitleText {
        id: heading
        Layout.fillWidth: true
        text: "A new version is available"
    }
    BodyText {
        id: versions
        Layout.fillWidth: true
        text: "Quillmark " + root.newVersion + " can be installed. You have "
              + root.currentVersion + "."
        color: Theme.color.onSurfaceVariant
    }
    ReleaseNotes {
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 0
        Layout.maximumHeight: implicitHeight
        model: root.notes
        onLinkPressed: address => root.linkPressed(address)
    }
    Flow {
        Layout.topMargin: 4
        Layout.fillWidth: true
        spacing: 12

        FilledButton {
            id: install
            text: "INSTALL"
            onClicked: root.installed()

            Accessible.description: heading.text + "\n" + versions.text
        }
        OutlinedButton {
            text: "SKIP THIS VERSION"
            onClicked: root.skipped()
        }
        OutlinedButton {
            id: later
            text: "REMIND ME LATER"
            onClicked: root.closed()

            Accessible.description: root.asked ? "" : heading.text + "\n" + versions.text
        }
    }
}
