// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// Something is under way, and can only be waited for.
ColumnLayout {
    id: root

    required property string eyebrow
    required property string title
    required property string subtitle

    spacing: 24

    Item {
        Layout.fillHeight: true
    }
    // There is nothing to press. The keyboard comes here so that it is said what goes on.
    Spinner {
        Layout.alignment: Qt.AlignHCenter
        focus: true

        Accessible.role: Accessible.ProgressBar
        Accessible.name: root.eyebrow + " " + root.title
        Accessible.description: root.subtitle
        Accessible.focusable: true
        Accessible.ignored: !root.visible
    }
    StepText {
        Layout.alignment: Qt.AlignHCenter
        text: root.eyebrow
        color: Theme.color.primary
    }
    HeadlineText {
        Layout.fillWidth: true
        text: root.title
        tracking: -0.5
        horizontalAlignment: Text.AlignHCenter
    }
    MonoText {
        Layout.alignment: Qt.AlignHCenter
        text: root.subtitle
    }
    Item {
        Layout.fillHeight: true
    }
}
