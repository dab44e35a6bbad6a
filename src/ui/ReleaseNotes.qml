// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// Release notes, paragraph by paragraph, in a panel that scrolls.
ScrollPanel {
    id: root

    /// Has the roles kind, text, address and mark.
    required property var model

    signal linkPressed(url address)

    padding: 16
    spacing: 8

    Repeater {
        model: root.model

        NoteText {
            id: line
            Layout.fillWidth: true
            onLinkPressed: address => root.linkPressed(address)
            onHasKeyboardChanged: {
                if (line.hasKeyboard) {
                    root.reveal(line);
                }
            }
        }
    }
}
