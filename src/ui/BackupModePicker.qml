// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The choice of the backup mode, by raw value.
ShrinkingRow {
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

        readonly property real minimumWidth:
            Math.ceil(Theme.widestWord(caption.text, caption.font))

        width: root.widthOf(caption)
        anchors.verticalCenter: parent.verticalCenter
        text: "BACKUP MODE"
        wrapMode: Text.WordWrap
    }

    ShrinkingRow {
        id: strip

        function hasFocus(): bool {
            return strip.members().some(each => each.activeFocus);
        }

        width: root.widthOf(strip)
        anchors.verticalCenter: parent.verticalCenter

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

                width: strip.widthOf(button)
                height: strip.height
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
