// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A text that can be selected and copied, with the pointer and with the keyboard. Never
/// interpreted, and in the accessibility tree under what it says.
TextEdit {
    id: root

    font: Theme.font.mono
    color: Theme.color.onSurfaceVariant
    selectionColor: Theme.color.primary
    selectedTextColor: Theme.color.background
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    readOnly: true
    selectByKeyboard: true
    selectByMouse: true
    activeFocusOnTab: root.length > 0

    Accessible.role: Accessible.StaticText
    Accessible.name: root.text
    Accessible.ignored: !root.visible || root.length === 0

    FocusRing {
        target: root
    }
}
