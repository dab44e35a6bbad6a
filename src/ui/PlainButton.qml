// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A button without a look of its own: a padded text, and the layer that says that the button
/// is pointed at or pressed, for whoever draws it to lay over its fill.
Control {
    id: root

    required text
    property alias textColor: label.color
    property alias tracking: label.tracking
    property alias wrapMode: label.wrapMode
    property alias horizontalAlignment: label.horizontalAlignment
    property real horizontalPadding: 0
    property real verticalPadding: 0
    /// The colour of what stands on the button, of which the layer is made.
    property color contentColor: Theme.color.onSurface
    readonly property color stateLayer:
        Theme.stateLayer(root.contentColor, root.pointedAt, root.pressed)

    implicitWidth: Math.ceil(label.implicitWidth) + 2 * root.horizontalPadding
    implicitHeight: Math.ceil(label.implicitHeight) + 2 * root.verticalPadding
    opacity: root.enabled ? 1.0 : Theme.disabledOpacity

    Accessible.role: Accessible.Button
    Accessible.ignored: !root.visible

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
