// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// What a calendar shows, and how one goes about in it.
CalendarTest {
    id: root

    name: "Calendar"

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
