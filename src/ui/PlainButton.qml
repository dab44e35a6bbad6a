// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A button without a look of its own: a padded text.
Control {
    id: root

    required text
    property alias textColor: label.color
    property alias tracking: label.tracking
    property alias wrapMode: label.wrapMode
    property alias horizontalAlignment: label.horizontalAlignment
    property real horizontalPadding: 0
    property real verticalPadding: 0

    implicitWidth: Math.ceil(label.implicitWidth) + 2 * root.horizontalPadding
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * root.verticalPadding
    opacity: tap.pressed ? 0.7 : 1.0

    Accessible.role: Accessible.Button
    Accessible.ignored: !root.visible

    TapHandler {
        id: tap
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: root.press()
    }

    LabelText {
        id: label
        anchors.centerIn: parent
        width: Math.min(Math.ceil(label.implicitWidth), root.width - 2 * root.horizontalPadding)
        text: root.text
        tracking: 3.0
        horizontalAlignment: Text.AlignHCenter
        Accessible.ignored: true
    }

    FocusRing {
        target: root
    }
}
