// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A paragraph of release notes. Of a link the address is shown, so that everybody sees where
/// a press leads.
Item {
    id: root

    required property string kind
    required property string text
    required property url address
    required property string mark

    readonly property bool isLink: root.kind === "Link"
    readonly property bool hasKeyboard: link.activeFocus

    signal linkPressed(url address)

    implicitHeight: root.isLink ? link.implicitHeight : words.implicitHeight

    StyledText {
        id: bullet
        text: root.mark
        color: words.color
        Accessible.ignored: true
    }
    StyledText {
        id: words
        x: bullet.implicitWidth
        width: root.width - x
        visible: !root.isLink
        text: root.text
        style: root.kind === "Heading" ? Theme.font.title
               : root.kind === "Code" ? Theme.font.mono
               : Theme.font.body
        color: root.kind === "Heading" ? Theme.color.onSurface : Theme.color.onSurfaceVariant
        wrapMode: Text.Wrap
    }
    TextButton {
        id: link
        width: Math.min(implicitWidth, root.width)
        visible: root.isLink
        text: root.text
        tracking: 0
        wrapMode: Text.WrapAnywhere
        horizontalAlignment: Text.AlignLeft
        activeFocusOnTab: root.isLink
        onClicked: root.linkPressed(root.address)
    }
}
