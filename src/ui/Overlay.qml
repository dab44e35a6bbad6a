// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// Something that lies over a window's content and has the keyboard while it is shown. When
/// it closes, the keyboard goes back to where it was.
Item {
    id: root

    /// Where the keyboard comes to.
    required property Item start
    property Item returnTo: null

    /// It has closed, and where the keyboard was there is nothing any more.
    signal focusLost

    function open(): void {
        if (!root.visible) {
            root.returnTo = root.Window.activeFocusItem;
            root.visible = true;
        }
        root.start.forceActiveFocus();
    }
    function close(): void {
        if (!root.visible) {
            return;
        }
        const target = root.returnTo;
        root.returnTo = null;
        root.visible = false;
        if (target && target.visible && target.enabled) {
            target.forceActiveFocus();
        } else {
            root.focusLost();
        }
    }

    visible: false
    Keys.onEscapePressed: root.close()
}
