// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// A label and its value, over a line.
Item {
    id: root

    required property string label
    required property string value

    implicitHeight: valueText.height + 20 + divider.height

    LabelText {
        anchors.baseline: valueText.baseline
        width: 96
        text: root.label
    }
    BodyText {
        id: valueText
        anchors.left: parent.left
        anchors.leftMargin: 96
        anchors.right: parent.right
        y: 10
        text: root.value
    }
    Divider {
        id: divider
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        opacity: 0.4
    }
}
