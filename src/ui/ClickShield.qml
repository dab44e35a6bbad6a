// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// Takes the second press of a double click where the first one took away what was pressed:
/// it is not meant for what came to light below.
MouseArea {
    id: root

    /// Lies where an item is, until a press is no double click any more.
    function cover(item: Item): void {
        const place = item.mapToItem(root.parent, 0, 0, item.width, item.height);
        root.x = place.x;
        root.y = place.y;
        root.width = place.width;
        root.height = place.height;
        end.restart();
    }

    visible: end.running
    acceptedButtons: Qt.AllButtons

    Timer {
        id: end
        interval: Application.styleHints.mouseDoubleClickInterval
    }
}
