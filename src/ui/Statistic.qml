// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// A value under its label.
Column {
    id: root

    required property string label
    required property string value

    spacing: 6

    LabelText {
        text: root.label
    }
    TitleText {
        text: root.value
    }
}
