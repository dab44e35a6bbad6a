// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The strip on top of a window with the title of its one menu, which is shown elsewhere.
Rectangle {
    id: root

    required property string text
    /// Whether the menu is open.
    required property bool open

    signal opened

    implicitHeight: title.implicitHeight + line.height
    color: Theme.color.background

    // Without a name: the title of its one menu says what it is, and would be said twice.
    Accessible.role: Accessible.MenuBar
    Accessible.ignored: !root.visible

    MenuTitle {
        id: title
        text: root.text
        expanded: root.open
        onChosen: root.opened()
    }
    Divider {
        id: line
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
    }
}
