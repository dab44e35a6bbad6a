// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "MenuBar"
    screen: Component {
        Item {
            id: shell
            property list<string> told

            MenuBar {
                id: bar
                objectName: "bar"
                width: shell.width
                text: "Quillmark"
                open: menu.visible
                onOpened: menu.open()
            }
            WindowMenu {
                id: menu
                objectName: "menu"
                anchors.fill: parent
                topEdge: bar.height
                actions: WindowActions {
                    objectName: "actions"
                    onAboutRequested: shell.told.push("about")
                    onQuitRequested: shell.told.push("quit")
                }
            }
        }
    }

    function bar(): Item {
        return findChild(root.item, "bar");
    }
    function menu(): Item {
        return findChild(root.item, "menu");
    }
    function fill(text: string): color {
        return Array.from(button(text).children).find(each => each.radius !== undefined).color;
    }

    function test_barIsLowAndLined() {
        show({});
        const label = root.label("Quillmark");
        compareStyle("Quillmark", Theme.color.onSurface, 0, Theme.font.body);
        compare(bar().height, Math.ceil(label.implicitHeight) + 12 + 1);
        compare(bar().width, item.width);
        verify(Qt.colorEqual(bar().color, Theme.color.background));
        const line = Array.from(bar().children).find(each => each.height === 1);
        verify(Qt.colorEqual(line.color, Theme.color.outlineVariant));
        compare(line.y + line.height, bar().height);
    }

    function test_menuHangsFromTheBar() {
        show({});
        click("Quillmark");
        const frame = button("About Quillmark").parent.parent;
        compare(place(frame).y, bar().height);
        compare(place(frame).x, 0);
        verify(Qt.colorEqual(frame.color, Theme.color.surfaceContainer));
        verify(Qt.colorEqual(frame.border.color, Theme.color.outlineVariant));
        compare(frame.border.width, 1);
        let bottom = place(frame).y + 1;
        for (const text of ["About Quillmark", "Check for Updates…", "Quit Quillmark"]) {
            const line = place(button(text));
            compare(line.y, bottom, text);
            compare(line.x, 1, text);
            compare(line.width, frame.width - 2, text);
            verify(label(text).contentWidth <= line.width - 32, text);
            bottom += line.height;
        }
        compare(bottom + 1, bar().height + frame.height);
        const keys = place(label("Ctrl+Q"));
        verify(keys.x >= place(label("Quit Quillmark")).x + label("Quit Quillmark").width + 40);
        compare(keys.x + keys.width, frame.width - 1 - 16);
    }

    function test_highlightShowsWhereTheKeyboardIs() {
        show({});
        click("Quillmark");
        compareStyle("About Quillmark", Theme.color.background, 0, Theme.font.body);
        verify(Qt.colorEqual(fill("About Quillmark"), Theme.color.primary));
        compareStyle("Quit Quillmark", Theme.color.onSurface, 0, Theme.font.body);
        keyClick(Qt.Key_Up);
        compareStyle("About Quillmark", Theme.color.onSurface, 0, Theme.font.body);
        compareStyle("Quit Quillmark", Theme.color.background, 0, Theme.font.body);
        compareStyle("Ctrl+Q", Theme.color.background, 0, Theme.font.body);
    }

    function test_pointerHighlights() {
        show({});
        click("Quillmark");
        mouseMove(button("Quit Quillmark"));
        verify(button("Quit Quillmark").activeFocus);
    }

    function test_whatIsNotAvailableLooksSo() {
        show({});
        click("Quillmark");
        const dimmed = Qt.alpha(Theme.color.onSurfaceVariant, 0.6);
        compareStyle("Check for Updates…", dimmed, 0, Theme.font.body);
        keyClick(Qt.Key_Down);
        compareStyle("Check for Updates…", dimmed, 0, Theme.font.body);
        verify(!Qt.colorEqual(fill("Check for Updates…"), Theme.color.primary));
        button("Check for Updates…").available = true;
        compareStyle("Check for Updates…", Theme.color.background, 0, Theme.font.body);
    }

    function test_closesBeforeItTells_data() {
        return [
            {tag: "about", text: "About Quillmark", told: "about"},
            {tag: "quit", text: "Quit Quillmark", told: "quit"},
        ];
    }
    function test_closesBeforeItTells(data) {
        show({});
        click("Quillmark");
        click(data.text);
        verify(!menu().visible);
        compare(Array.from(item.told), [data.told]);
    }

    function test_titleShowsThatItsMenuIsOpen() {
        show({});
        compareStyle("Quillmark", Theme.color.onSurface, 0, Theme.font.body);
        click("Quillmark");
        compareStyle("Quillmark", Theme.color.background, 0, Theme.font.body);
        mouseClick(item, item.width - 10, item.height - 10);
        verify(!menu().visible);
        compareStyle("Quillmark", Theme.color.onSurface, 0, Theme.font.body);
    }
}
