// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// Where the window puts its bar and its screens.
TestCase {
    id: root

    property Window window

    name: "LayoutWindow"
    when: windowShown
    visible: true

    Component {
        id: main
        Main {}
    }

    function open(size: var): void {
        root.window = createTemporaryObject(main, root, size);
        verify(root.window);
        tryVerify(() => root.window.active || root.window.visible);
        waitForRendering(root.window.contentItem);
    }
    /// The first item below that has a property of this name.
    function having(name: string): Item {
        const open = [root.window.contentItem];
        while (open.length > 0) {
            const next = open.shift();
            if (next.visible && next[name] !== undefined) {
                return next;
            }
            open.push(...Array.from(next.children));
        }
        return null;
    }
    function bar(): Item {
        return findChild(root.window, "menuBar");
    }
    function place(item: Item): rect {
        return item.mapToItem(root.window.contentItem, 0, 0, item.width, item.height);
    }
    function sizes(): var {
        return [
            {tag: "720x560", width: 720, height: 560},
            {tag: "1000x700", width: 1000, height: 700},
            {tag: "1920x1200", width: 1920, height: 1200},
        ];
    }
    function checkMargins(screen: Item, size: var): void {
        const box = place(screen);
        compare(box.x, 40);
        compare(box.y, bar().height + 40);
        compare(box.width, size.width - 80);
        compare(box.height, size.height - 80);
    }
    function openWithContent(size: var): void {
        open({width: size.width});
        root.window.height = size.height + bar().height;
        waitForRendering(root.window.contentItem);
    }

    function test_title() {
        open({});
        compare(root.window.title, "Quillmark");
        compare(root.window.color.toString(), "#0e0e0e");
    }

    function test_smallestContent() {
        open({});
        compare(root.window.minimumWidth, 720);
        compare(root.window.minimumHeight, 560 + bar().height);
        verify(root.window.maximumWidth >= 16000);
        verify(root.window.maximumHeight >= 16000);
    }

    function test_barLiesOnTop_data() { return sizes(); }
    function test_barLiesOnTop(size) {
        openWithContent(size);
        compare(place(bar()), Qt.rect(0, 0, size.width, bar().height));
    }

    function test_idleScreenHasMargins_data() { return sizes(); }
    function test_idleScreenHasMargins(size) {
        openWithContent(size);
        checkMargins(having("hovered"), size);
    }

    function test_otherScreensHaveMargins_data() { return sizes(); }
    function test_otherScreensHaveMargins(size) {
        openWithContent(size);
        having("hovered").picked("file:///nowhere/at/all");
        tryVerify(() => having("message") !== null, 5000, "the error of a missing folder");
        checkMargins(having("message"), size);
    }
}
