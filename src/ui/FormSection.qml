// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// A titled group of a form's rows.
ColumnLayout {
    id: root

    required property string title

    Layout.fillWidth: true
    spacing: 10

    PanelTitle {
        text: root.title
    }
}
