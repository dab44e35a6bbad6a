// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A text in one of the theme's fonts. Never interpreted, and in the accessibility tree
/// under what it shows while it is shown.
Text {
    id: root

    property font style: Theme.font.body
    /// Pixels added after each character.
    property real tracking: 0

    font: Theme.tracked(root.style, root.tracking)
    color: Theme.color.onSurface
    textFormat: Text.PlainText

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
    Accessible.ignored: !root.visible
}
