// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A calendar beside a field, over everything else in the window. Tab stays in it, and until
/// it is closed nothing below it takes a press.
FocusScope {
    id: root

    required property Item field
    property alias chosen: days.chosen
    property alias localeName: days.localeName
    property alias today: days.today

    property bool shown: false

    /// A day was picked, in that place.
    signal picked(string day, Item cell)
    signal dismissed
    /// Something else has taken the keyboard.
    signal abandoned

    function show(): void {
        root.place();
        grid.focusCurrent();
        root.shown = true;
    }
    /// In a window of another size the field goes elsewhere.
    function dismissOnceShown(): void {
        if (root.shown) {
            root.dismissed();
        }
    }
    /// Where the part of the window begins that the field is in: below a menu bar.
    function topEdge(): real {
        let part = root.field;
        while (part.parent && part.parent !== root.Window.contentItem) {
            part = part.parent;
        }
        return Math.max(0, part.y);
    }
    /// Below the field where there is room, else above it, else beside it.
    function place(): void {
        const top = root.topEdge() + 8;
        const at = root.field.mapToItem(root, 0, 0);
        const below = at.y + root.field.height + 4;
        const above = at.y - panel.height - 4;
        const fitsBelow = below + panel.height + 8 <= root.height;
        const beside = !fitsBelow && above < top;
        const x = beside ? at.x + root.field.width + 4 : at.x;
        panel.x = Math.max(8, Math.min(x, root.width - panel.width - 8));
        const y = fitsBelow || beside ? below : above;
        panel.y = Math.max(top, Math.min(y, root.height - panel.height - 8));
    }

    onActiveFocusChanged: {
        if (root.shown && !root.activeFocus && root.Window.active) {
            root.abandoned();
        }
    }
    onWidthChanged: root.dismissOnceShown()
    onHeightChanged: root.dismissOnceShown()

    Keys.onEscapePressed: root.dismissed()
    // What keys mean to the window and its screen is for when nothing lies over them; what
    // goes with Ctrl, like ending the program, stays.
    Keys.onShortcutOverride: event => event.accepted = !(event.modifiers & Qt.ControlModifier)

    CalendarModel {
        id: days
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onPressed: mouse => {
            if (!panel.contains(mapToItem(panel, mouse.x, mouse.y))) {
                root.dismissed();
            }
        }
        onWheel: wheel => wheel.accepted = true
    }

    Box {
        id: panel
        objectName: "panel"
        width: grid.width + 24
        height: content.height + 24
        color: Theme.color.surfaceContainer
        border.width: 1
        border.color: Theme.color.outlineVariant

        Column {
            id: content
            x: 12
            y: 12
            spacing: 8

            CalendarHeading {
                id: heading
                width: grid.width
                model: days
                onLeftForwards: grid.focusCurrent()
                onLeftBackwards: grid.focusCurrent()
            }
            CalendarGrid {
                id: grid
                model: days
                onPicked: (day, cell) => root.picked(day, cell)
                Keys.onTabPressed: heading.enterForwards()
                Keys.onBacktabPressed: heading.enterBackwards()
            }
        }
    }
}
