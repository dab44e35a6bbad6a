// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// Something about updates that can only be waited for, or only be read.
DialogContent {
    id: root

    required property string title
    required property string message
    required property string buttonText
    property bool busy: false
    /// What the user may want to copy; nothing by default.
    property string note: ""

    start: button

    TitleText {
        id: heading
        Layout.fillWidth: true
        text: root.title
    }
    Spinner {
        visible: root.busy
        Accessible.ignored: true
    }
    BodyText {
        Layout.fillWidth: true
        visible: root.message.length > 0
        text: root.message
        color: Theme.color.onSurfaceVariant
    }
    SelectableText {
        Layout.fillWidth: true
        visible: root.note.length > 0
        text: root.note
    }
    FilledButton {
        id: button
        Layout.topMargin: 4
        text: root.buttonText
        onClicked: root.closed()

        Accessible.description: heading.text + "\n" + root.message
    }
}
