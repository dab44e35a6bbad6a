// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// The calendar of a date field.
ScreenTest {
    id: root

    name: "Calendar"
    width: 640
    height: 560
    screen: Component {
        Item {
            id: panel

            property string day: "2026-05-01"
            property int escapes: 0

            Shortcut {
                sequence: "Escape"
                onActivated: ++panel.escapes
            }
            DatePicker {
                objectName: "picker"
                x: 40
                y: 40
                width: 160
                name: "DATE"
                value: panel.day
                onPicked: day => panel.day = day
            }
            OutlinedButton {
                objectName: "elsewhere"
                x: 40
                y: 480
                text: "ELSEWHERE"
            }
        }
    }

    function init(): void {
        show({});
        mouseClick(item, 1, 1);
    }

    function picker(): Item {
        return findChild(item, "picker");
    }
    function input(): Item {
        return findChild(picker(), "input");
    }
    /// The whole window: a calendar lies over the screen, not in it.
    function content(): Item {
        return root.Window.contentItem;
    }
    function find(accept: var): var {
        const found = [];
        const open = [content()];
        while (open.length > 0) {
            const next = open.pop();
            if (next.visible) {
                if (accept(next)) {
                    found.push(next);
                }
                open.push(...Array.from(next.children));
            }
        }
        return found;
    }
    function days(): var {
        return find(each => each.isChosen !== undefined).sort((a, b) => a.index - b.index);
    }
    function day(iso: string): Item {
        const found = days().filter(each => each.day === iso);
        compare(found.length, 1, iso);
        return found[0];
    }
    function named(text: string): Item {
        const found = find(each => each.text === text && each.clicked !== undefined);
        compare(found.length, 1, text);
        return found[0];
    }
    function shown(text: string): bool {
        return find(each => each.text === text && each.lineCount !== undefined).length > 0;
    }
    function calendar(): Item {
        return find(each => each.objectName === "panel")[0];
    }
    function openByKey(): void {
        input().forceActiveFocus();
        keyClick(Qt.Key_Down);
        verify(picker().opened);
    }
    function current(): string {
        const found = days().filter(each => each.activeFocus);
        compare(found.length, 1, "one day has the focus");
        return found[0].day;
    }

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

    function test_keysMove_data() {
        return [
            {tag: "Left", key: Qt.Key_Left, to: "2026-04-30"},
            {tag: "Right", key: Qt.Key_Right, to: "2026-05-02"},
            {tag: "Up", key: Qt.Key_Up, to: "2026-04-24"},
            {tag: "Down", key: Qt.Key_Down, to: "2026-05-08"},
            {tag: "PageUp", key: Qt.Key_PageUp, to: "2026-04-01"},
            {tag: "PageDown", key: Qt.Key_PageDown, to: "2026-06-01"},
            {tag: "Shift+PageUp", key: Qt.Key_PageUp, modifiers: Qt.ShiftModifier,
             to: "2025-05-01"},
            {tag: "Ctrl+PageDown", key: Qt.Key_PageDown, modifiers: Qt.ControlModifier,
             to: "2027-05-01"},
            {tag: "Ctrl+End", key: Qt.Key_End, modifiers: Qt.ControlModifier, to: "2026-05-31"},
        ];
    }
    function test_keysMove(data) {
        openByKey();
        keyClick(data.key, data.modifiers);
        compare(current(), data.to);
        compare(item.day, "2026-05-01", "nothing is chosen yet");
        keyClick(Qt.Key_Return);
        compare(item.day, data.to);
        verify(!picker().opened);
        verify(input().activeFocus);
        compare(input().text, data.to);
    }

    function test_theFocusedDayIsMarked() {
        openByKey();
        keyClick(Qt.Key_Right);
        const it = day("2026-05-02");
        const at = it.mapToItem(root, 1, 16);
        verify(Qt.colorEqual(grabImage(content()).pixel(at.x, at.y), Theme.color.primary));
    }

    function test_spaceChooses() {
        openByKey();
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Space);
        compare(item.day, "2026-05-02");
        verify(input().activeFocus);
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

    function test_tabStaysInIt() {
        openByKey();
        const round = ["Previous year", "Previous month", "Next month", "Next year"];
        for (const name of round) {
            keyClick(Qt.Key_Tab);
            verify(named(name).activeFocus, name);
        }
        keyClick(Qt.Key_Tab);
        compare(current(), "2026-05-01");
        for (const name of round.reverse()) {
            keyClick(Qt.Key_Backtab);
            verify(named(name).activeFocus, name);
        }
        keyClick(Qt.Key_Backtab);
        compare(current(), "2026-05-01");
    }

    function test_buttonsTurnPages_data() {
        return [
            {tag: "Previous year", title: "MAY 2025"},
            {tag: "Previous month", title: "APRIL 2026"},
            {tag: "Next month", title: "JUNE 2026"},
            {tag: "Next year", title: "MAY 2027"},
        ];
    }
    function test_buttonsTurnPages(data) {
        openByKey();
        mouseClick(named(data.tag));
        verify(shown(data.title));
        named(data.tag).forceActiveFocus();
        keyClick(Qt.Key_Space);
        verify(named(data.tag).activeFocus, "and keep the focus");
        verify(!shown(data.title));
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

    function test_looks() {
        openByKey();
        const fill = it => find(each => each.parent === it && each.border !== undefined)[0];
        const ink = it => find(each => each.parent === it && each.lineCount !== undefined)[0];
        const chosen = day("2026-05-01");
        verify(Qt.colorEqual(fill(chosen).color, Theme.color.primary));
        verify(Qt.colorEqual(ink(chosen).color, Theme.color.background));
        verify(Qt.colorEqual(ink(day("2026-05-02")).color, Theme.color.onSurface));
        verify(!Qt.colorEqual(ink(day("2026-04-30")).color, Theme.color.onSurface), "dimmed");
        compare(days().filter(each => each.isChosen).length, 1);
        verify(Qt.colorEqual(calendar().color, Theme.color.surfaceContainer));
        compare(calendar().border.width, 1);
        verify(Qt.colorEqual(calendar().border.color, Theme.color.outlineVariant));
    }

    function test_bounds_data() {
        return [
            {tag: "first", day: "0001-01-01", keys: [Qt.Key_Left, Qt.Key_Up, Qt.Key_PageUp]},
            {tag: "last", day: "9999-12-31", keys: [Qt.Key_Right, Qt.Key_Down, Qt.Key_PageDown]},
        ];
    }
    function test_bounds(data) {
        item.day = data.day;
        openByKey();
        for (const key of data.keys) {
            keyClick(key);
            compare(current(), data.day);
        }
        for (const name of ["Previous year", "Next year"]) {
            mouseClick(named(name));
        }
        keyClick(Qt.Key_Return);
        verify(/^\d{4}-\d\d-\d\d$/.test(item.day));
    }

    function test_leapDays() {
        item.day = "2024-01-31";
        openByKey();
        keyClick(Qt.Key_PageDown);
        compare(current(), "2024-02-29");
        keyClick(Qt.Key_PageDown, Qt.ShiftModifier);
        compare(current(), "2025-02-28");
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

    function test_typingStillWorks() {
        let typed = "";
        picker().edited.connect(text => typed = text);
        input().forceActiveFocus();
        input().selectAll();
        for (const letter of "2020-02-29") {
            keyClick(letter);
        }
        compare(typed, "2020-02-29");
        verify(!picker().opened);
    }

    Component {
        id: alone
        Item {
            property alias sheet: popup
            Item {
                id: field
                width: 100
                height: 30
            }
            CalendarPopup {
                id: popup
                anchors.fill: parent
                field: field
                localeName: "en_US"
                today: "2026-05-14"
                chosen: "2026-05-01"
            }
        }
    }
    function test_localeSaysHowWeeksStart() {
        const it = createTemporaryObject(alone, root, {width: 600, height: 500});
        verify(shown("SUN"));
        compare(days()[0].day, "2026-04-26");
        compare(day("2026-05-01").text, "Friday, May 1, 2026");
        it.sheet.localeName = "de_DE";
        compare(days()[0].day, "2026-04-27");
        compare(day("2026-05-01").text, "Freitag, 1. Mai 2026");
        verify(shown("MAI 2026"));
    }
    function test_todayIsMarked() {
        createTemporaryObject(alone, root, {width: 600, height: 500});
        const marked = days().filter(each => each.isToday);
        compare(marked.length, 1);
        compare(marked[0].day, "2026-05-14");
        const frame = Array.from(marked[0].children).find(each => each.border !== undefined);
        compare(frame.border.width, 1);
    }
}
