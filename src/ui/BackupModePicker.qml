// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// The choice of the backup mode, by raw value.
RowLayout {
    id: root

    required property string selection

    signal picked(string rawMode)

    /// As in every group of choices: the keyboard comes to the chosen one, and the arrows
    /// choose.
    function step(places: int): void {
        const count = modes.count;
        const from = modes.model.indexOf(root.selection);
        const next = (from + places + count) % count;
        modes.itemAt(next).forceActiveFocus();
        root.picked(modes.model[next]);
    }

    spacing: 32

    LabelText {
        id: caption
        Layout.fillWidth: true
        Layout.minimumWidth: Math.ceil(Theme.widestWord(caption.text, caption.font))
        Layout.maximumWidth: Math.ceil(implicitWidth)
        text: "BACKUP MODE"
        wrapMode: Text.WordWrap
    }

    RowLayout {
        id: strip

        function hasFocus(): bool {
            return Array.from(strip.children).some(each => each.activeFocus);
        }

        spacing: 0

        Keys.onLeftPressed: root.step(-1)
        Keys.onUpPressed: root.step(-1)
        Keys.onRightPressed: root.step(1)
        Keys.onDownPressed: root.step(1)

        Repeater {
            id: modes
            model: ["backup-originals", "write-copies", "none"]

            ModeButton {
                id: button
                required property string modelData

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.minimumWidth: minimumWidth
                Layout.maximumWidth: implicitWidth
                text: mode.title
                checked: root.selection === button.modelData
                onClicked: {
                    // The keyboard stays with the chosen one while it is on the strip.
                    if (strip.hasFocus()) {
                        button.forceActiveFocus();
                    }
                    root.picked(button.modelData);
                }

                BackupModeText {
                    id: mode
                    rawValue: button.modelData
                }
            }
        }
    }
}
