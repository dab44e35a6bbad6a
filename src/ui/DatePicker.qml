// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A day: typed as yyyy-MM-dd, or picked in a calendar that the button, F4 or the Down key
/// opens.
TextEntry {
    id: root

    readonly property bool opened: calendar.popup !== null

    /// The calendar is about to open beside the field, which is to be in sight.
    signal opening
    /// A day was picked in the calendar.
    signal picked(string day)

    function open(): void {
        if (root.enabled && root.visible && !root.opened) {
            root.opening();
            calendar.setSource("CalendarPopup.qml", {field: root, chosen: root.value});
        }
    }
    function close(): void {
        if (root.opened) {
            calendar.source = "";
            if (root.enabled && root.visible) {
                root.takeFocus();
            }
        }
    }

    implicitWidth: Math.ceil(metrics.advanceWidth) + 2 * root.horizontalPadding + root.trailing + 4
    horizontalPadding: 6
    trailing: button.width + 2
    onEnabledChanged: root.close()
    onVisibleChanged: root.close()

    Keys.onPressed: event => {
        event.accepted = event.key === Qt.Key_F4 || event.key === Qt.Key_Down;
        if (event.accepted) {
            root.open();
        }
    }

    // As wide as the widest day.
    TextMetrics {
        id: metrics
        font: Theme.font.body
        text: "0000-00-00"
    }

    GlyphButton {
        id: button
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.margins: 2
        text: "Choose a date"
        onClicked: root.open()

        // Not the field's.
        HoverHandler {
            cursorShape: Qt.ArrowCursor
        }
        CalendarGlyph {
            anchors.centerIn: parent
            ink: button.ink
        }
    }

    // In the window's content, over all else there.
    Loader {
        id: calendar

        readonly property CalendarPopup popup: calendar.item as CalendarPopup

        parent: root.Window.contentItem
        anchors.fill: parent
        onLoaded: calendar.popup.show()

        Connections {
            target: calendar.popup
            function onDismissed(): void {
                root.close();
            }
            function onAbandoned(): void {
                // For when the keyboard comes back.
                root.input.focus = root.enabled;
                calendar.source = "";
            }
            function onPicked(day: string, cell: Item): void {
                if (!Keyboard.inUse) {
                    shield.cover(cell);
                }
                root.picked(day);
                root.close();
            }
        }
    }

    ClickShield {
        id: shield
        parent: root.Window.contentItem
    }
}
