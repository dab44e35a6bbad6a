// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest

/// A test of one screen, shown at the size that the smallest window leaves for it. It finds
/// what is shown by its text, as a user does.
TestCase {
    id: root

    /// The screen under test; a new one for each test function.
    required property Component screen
    property Item item

    width: 640
    height: 480
    visible: true
    when: windowShown

    function show(properties: var): void {
        root.item = root.createTemporaryObject(root.screen, root,
            Object.assign({width: root.width, height: root.height}, properties));
        root.verify(root.item);
        root.waitForRendering(root.item);
    }

    /// Every shown item that has exactly this text: texts, and buttons by their label.
    function all(text: string): var {
        const found = [];
        const open = [root.item];
        while (open.length > 0) {
            const next = open.pop();
            if (next.visible) {
                if (next.text === text) {
                    found.push(next);
                }
                open.push(...Array.from(next.children));
            }
        }
        return found;
    }
    function shows(text: string): bool {
        return root.all(text).length > 0;
    }
    /// The Text item of this text.
    function label(text: string): Item {
        const found = root.all(text).filter(each => each.lineCount !== undefined);
        root.verify(found.length > 0, "text: " + text);
        return found[0];
    }
    function button(text: string): Item {
        const found = root.all(text).filter(each => each.clicked !== undefined);
        root.compare(found.length, 1, "button: " + text);
        return found[0];
    }
    function click(text: string): void {
        root.mouseClick(root.button(text));
    }
    function place(item: Item): rect {
        return item.mapToItem(root.item, 0, 0, item.width, item.height);
    }
    /// Colour and letter spacing of the text.
    function compareStyle(text: string, color: color, tracking: real, style: font): void {
        const found = root.label(text);
        root.verify(Qt.colorEqual(found.color, color), text + ": " + found.color);
        root.compare(found.font.letterSpacing, tracking, text);
        root.compare(found.font.pointSize, style.pointSize, text);
        root.compare(found.font.weight, style.weight, text);
        root.compare(found.textFormat, Text.PlainText, text);
    }
}
