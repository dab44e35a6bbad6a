// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// A new version is on its way.
DialogContent {
    id: root

    required property string newVersion
    /// Bytes: how many have come, of how many; -1 where that is not known.
    required property real received
    required property real expected
    /// All of it is there, and its signature is computed.
    required property bool verifying

    function size(bytes: real): string {
        return Qt.locale("C").formattedDataSize(bytes, 1, Locale.DataSizeSIFormat);
    }

    start: button

    TitleText {
        id: heading
        Layout.fillWidth: true
        text: root.verifying ? "Verifying Quillmark " + root.newVersion + "\u2026"
                             : "Downloading Quillmark " + root.newVersion + "\u2026"
    }
    ProgressBar {
        Layout.fillWidth: true
        visible: root.expected > 0
        name: heading.text
        value: root.expected > 0 ? root.received / root.expected : 0
    }
    MonoText {
        Layout.fillWidth: true
        text: root.expected > 0 ? root.size(root.received) + " of " + root.size(root.expected)
                                : root.size(root.received)
    }
    OutlinedButton {
        id: button
        Layout.topMargin: 4
        text: "CANCEL"
        onClicked: root.closed()

        Accessible.description: heading.text
    }
}
