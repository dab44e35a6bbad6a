// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A month's days under the names of the weekdays. The keyboard stands on one of them.
FocusScope {
    id: root

    required property CalendarModel model

    signal picked(string day, Item cell)

    function focusCurrent(): void {
        days.itemAt(root.model.currentPlace).forceActiveFocus();
    }

    implicitWidth: grid.implicitWidth
    implicitHeight: grid.y + grid.implicitHeight

    Keys.onPressed: event => event.accepted = root.model.moveByKey(event.key, event.modifiers)

    Connections {
        target: root.model
        function onChanged(): void {
            if (root.activeFocus) {
                root.focusCurrent();
            }
        }
    }

    // The table is not the scope, which would say that it has the keyboard beside its day.
    Item {
        anchors.fill: parent

        Accessible.role: Accessible.Table
        Accessible.name: root.model.title
        Accessible.ignored: !root.visible

        Row {
            Repeater {
                model: root.model.weekdays

                LabelText {
                    required property string modelData

                    width: 32
                    text: modelData.toUpperCase()
                    tracking: 0.5
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignHCenter
                }
            }
        }
        Grid {
            id: grid
            y: 24
            columns: 7

            Repeater {
                id: days
                model: root.model

                CalendarDay {
                    id: cell
                    onClicked: root.picked(cell.day, cell)
                }
            }
        }
    }
}
