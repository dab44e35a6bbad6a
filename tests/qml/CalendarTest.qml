// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// A test of a date field and the calendar that it opens.
ScreenTest {
    id: root

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
}
