// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// How a calendar comes and goes, and where it stands.
CalendarTest {
    id: root

    name: "CalendarPopup"

    function test_keysOpenIt_data() {
        return [
            {tag: "Down", key: Qt.Key_Down, modifiers: Qt.NoModifier},
            {tag: "Alt+Down", key: Qt.Key_Down, modifiers: Qt.AltModifier},
            {tag: "F4", key: Qt.Key_F4, modifiers: Qt.NoModifier},
        ];
    }
    function test_keysOpenIt(data) {
        verify(!picker().opened);
        compare(days().length, 0);
        input().forceActiveFocus();
        keyClick(data.key, data.modifiers);
        verify(picker().opened);
        compare(days().length, 42);
        compare(current(), "2026-05-01");
        verify(shown("MAY 2026"));
    }

    function test_buttonOpensIt() {
        mouseClick(named("Choose a date"));
        verify(picker().opened);
        compare(current(), "2026-05-01");
    }

    function test_escapeOnlyCloses() {
        openByKey();
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Escape);
        verify(!picker().opened);
        compare(item.day, "2026-05-01");
        compare(item.escapes, 0);
        verify(input().activeFocus);
        keyClick(Qt.Key_Escape);
        compare(item.escapes, 1, "the screen's again");
    }

    function test_aClickChooses() {
        mouseClick(named("Choose a date"));
        mouseClick(day("2026-05-20"));
        compare(item.day, "2026-05-20");
        verify(!picker().opened);
        verify(input().activeFocus);
    }

    function test_aDoubleClickDoesNotFallThrough() {
        mouseClick(named("Choose a date"));
        const at = day("2026-05-20").mapToItem(root, 16, 16);
        const below = createTemporaryObject(under, item, {
            x: at.x - 50, y: at.y - 50, width: 100, height: 100
        });
        mouseClick(root, at.x, at.y);
        compare(item.day, "2026-05-20");
        mouseClick(root, at.x, at.y);
        compare(below.presses, 0);
        verify(input().activeFocus);
        mouseClick(root, at.x + 40, at.y + 40);
        compare(below.presses, 1, "beside it");
        tryVerify(() => {
            mouseClick(root, at.x, at.y);
            return below.presses > 1;
        }, 5000, "later");
    }
    Component {
        id: under
        MouseArea {
            property int presses: 0
            onPressed: ++presses
        }
    }

    function test_aClickChoosesADayOfAnotherMonth() {
        mouseClick(named("Choose a date"));
        mouseClick(days()[0]);
        compare(item.day.slice(0, 7), "2026-04");
    }

    function test_aPressOutsideCloses() {
        openByKey();
        mouseClick(findChild(item, "elsewhere"));
        verify(!picker().opened);
        compare(item.day, "2026-05-01");
        openByKey();
        mouseClick(calendar(), 3, 3);
        verify(picker().opened, "its own edge is not outside");
    }

    function test_closesWithItsField_data() {
        return [{tag: "enabled"}, {tag: "visible"}];
    }
    function test_closesWithItsField(data) {
        openByKey();
        picker()[data.tag] = false;
        verify(!picker().opened);
        tryVerify(() => days().length === 0);
        picker().open();
        verify(!picker().opened);
    }

    function test_closesWhenTheWindowChangesItsSize() {
        openByKey();
        root.Window.window.width += 20;
        tryVerify(() => !picker().opened);
        root.Window.window.width -= 20;
    }

    function test_goesWithItsField() {
        openByKey();
        item.destroy();
        tryVerify(() => days().length === 0);
    }

    function test_staysInTheWindow_data() {
        return [
            {tag: "below", x: 40, y: 40, above: false},
            {tag: "above", x: 40, y: 500, above: true},
            {tag: "beside", x: 40, y: 260},
            {tag: "right edge", x: 480, y: 40},
            {tag: "lower right corner", x: 480, y: 520},
            {tag: "out of sight below", x: 40, y: 900},
            {tag: "out of sight above", x: 40, y: -400},
        ];
    }
    function test_staysInTheWindow(data) {
        picker().x = data.x;
        picker().y = data.y;
        openByKey();
        const it = calendar();
        const at = it.mapToItem(content(), 0, 0);
        verify(at.x >= 0 && at.y >= 0);
        verify(at.x + it.width <= content().width && at.y + it.height <= content().height);
        const field = picker().mapToItem(content(), 0, 0);
        if (data.above === false) {
            verify(at.y >= field.y + picker().height);
        } else if (data.above) {
            verify(at.y + it.height <= field.y);
        } else if (data.tag === "beside") {
            verify(at.x >= field.x + picker().width);
        }
    }
}
