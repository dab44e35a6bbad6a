// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Which month a calendar shows, between the buttons that go to others.
Item {
    id: root

    required property CalendarModel model

    /// Tab leaves the last button, or the other way the first one.
    signal leftForwards
    signal leftBackwards

    function enterForwards(): void {
        previousYear.forceActiveFocus(Qt.TabFocusReason);
    }
    function enterBackwards(): void {
        nextYear.forceActiveFocus(Qt.BacktabFocusReason);
    }

    implicitHeight: previousYear.implicitHeight

    component Button: GlyphButton {
        required property int step
        required property int count

        onClicked: root.model.move(step, count)
    }

    Row {
        Button {
            id: previousYear
            text: "Previous year"
            glyph: "\u00AB"
            Keys.onBacktabPressed: root.leftBackwards()
            step: CalendarModel.Year
            count: -1
        }
        Button {
            text: "Previous month"
            glyph: "\u2039"
            step: CalendarModel.Month
            count: -1
        }
    }
    LabelText {
        anchors.centerIn: parent
        width: root.width - 4 * previousYear.width
        text: root.model.title.toUpperCase()
        color: Theme.color.onSurface
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
    }
    Row {
        anchors.right: parent.right

        Button {
            text: "Next month"
            glyph: "\u203A"
            step: CalendarModel.Month
            count: 1
        }
        Button {
            id: nextYear
            text: "Next year"
            glyph: "\u00BB"
            Keys.onTabPressed: root.leftForwards()
            step: CalendarModel.Year
            count: 1
        }
    }
}
