// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// What the slate says.
ScrollPanel {
    id: root

    /// A model with the roles "label" and "value".
    required property var rows

    spacing: 0

    PanelTitle {
        Layout.bottomMargin: 16
        text: "PAYLOAD"
    }

    Repeater {
        model: root.rows

        InspectorRow {
            Layout.fillWidth: true
        }
    }
}
