// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// A filled panel around a column of items, as high as they are where there is room; where
/// there is not, the column scrolls inside it.
Item {
    id: root

    default property alias content: column.data
    property alias spacing: column.spacing
    property real padding: 20
    /// Whether the keyboard comes to the scroll bar; not needed where it comes to the items.
    property alias barOnTab: bar.activeFocusOnTab

    implicitHeight: column.implicitHeight + 2 * root.padding
    implicitWidth: column.implicitWidth + 2 * root.padding

    /// Scrolls so that an item of the column is seen.
    function reveal(item: Item): void {
        root.revealRow(column.mapFromItem(item, 0, 0).y, item.height);
    }
    /// Scrolls so that a part of the column is seen.
    function revealRow(top: real, height: real): void {
        flickable.contentY = Math.max(top + height + 2 * root.padding - flickable.height,
                                      Math.min(flickable.contentY, top));
    }

    Box {
        anchors.fill: parent
        color: Theme.color.surfaceContainerLow
    }

    Flickable {
        id: flickable
        objectName: "flickable"
        anchors.fill: parent
        contentWidth: width
        contentHeight: column.implicitHeight + 2 * root.padding
        boundsBehavior: Flickable.StopAtBounds
        interactive: bar.visible
        clip: true

        ColumnLayout {
            id: column
            x: root.padding
            y: root.padding
            width: flickable.width - 2 * root.padding
        }
    }

    ScrollBar {
        id: bar
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 2
        flickable: flickable
        activeFocusOnTab: true
    }

    FocusRing {
        target: bar
        anchors.margins: 0
    }
}
