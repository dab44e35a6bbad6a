// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// A button without a look of its own: a padded text that is clicked, pressed with the space
/// or return key, or pressed through the accessibility tree.
Item {
    id: root

    required property string text
    property alias textColor: label.color
    property alias tracking: label.tracking
    property alias wrapMode: label.wrapMode
    property alias horizontalAlignment: label.horizontalAlignment
    property real horizontalPadding: 0
    property real verticalPadding: 0

    signal clicked

    implicitWidth: Math.ceil(label.implicitWidth) + 2 * root.horizontalPadding
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * root.verticalPadding
    opacity: tap.pressed ? 0.7 : 1.0
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: root.text
    Accessible.focusable: true
    Accessible.ignored: !root.visible
    Accessible.onPressAction: root.press()

    Keys.onSpacePressed: root.press()
    Keys.onReturnPressed: root.press()
    Keys.onEnterPressed: root.press()

    function press(): void {
        if (root.enabled) {
            root.clicked();
        }
    }

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
