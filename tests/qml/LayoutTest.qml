// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest

/// A test of where everything stands on a screen, and in which font and colour. Each test
/// function is run at several sizes of the window; colours are those of the picture.
ScreenTest {
    id: root

    /// The palette and the type scale by their numbers, not by what the theme makes of them.
    readonly property var palette: ({
        background: "#0e0e0e",
        surfaceContainerLow: "#161514",
        surfaceContainer: "#1f1d1b",
        onSurface: "#e7e5e4",
        onSurfaceVariant: "#a8a29e",
        outlineVariant: "#44403c",
        primary: "#eabf8d",
        secondary: "#84a594",
        tertiary: "#ff7162",
    })
    readonly property var styles: ({
        headline: {scale: 2.0, weight: Font.Bold},
        title: {scale: 1.31, weight: Font.DemiBold},
        label: {scale: 0.77, weight: Font.Medium},
        caption: {scale: 0.77, weight: Font.Normal},
        body: {scale: 1.0, weight: Font.Normal},
        mono: {scale: 0.92, weight: Font.Normal},
    })

    /// The sizes that a window's content leaves for its screen.
    readonly property var sizes: [
        {tag: "720x560", width: 720 - 80, height: 560 - 80},
        {tag: "1000x700", width: 1000 - 80, height: 700 - 80},
        {tag: "1920x1200", width: 1920 - 80, height: 1200 - 80},
    ]

    property var picture: null

    width: 1920
    height: 1200

    /// Shows the screen at one of the sizes, and keeps a picture of it.
    function showAt(size: var, properties: var): void {
        root.show(Object.assign({width: size.width, height: size.height}, properties));
        root.picture = root.grabImage(root.item);
        root.compare(root.picture.width, size.width);
        root.compare(root.picture.height, size.height);
    }

    function checkText(text: string, style: var, tracking: real, color: string): void {
        const found = root.label(text);
        const size = Qt.application.font.pointSizeF || Qt.application.font.pointSize;
        root.fuzzyCompare(found.font.pointSize, size * style.scale, 0.01, text);
        root.compare(found.font.weight, style.weight, text);
        root.compare(found.font.letterSpacing, tracking, text);
        root.compare(found.color.toString(), color, text);
        root.compare(found.textFormat, Text.PlainText, text);
    }

    /// Compares lengths that may differ by the rounding to whole pixels.
    function near(found: real, wanted: real, what: string): void {
        root.verify(Math.abs(found - wanted) <= 1, what + ": " + found + ", not " + wanted);
    }
    function box(text: string): rect {
        return root.place(root.label(text));
    }
    function buttonBox(text: string): rect {
        return root.place(root.button(text));
    }
    function bottomOf(box: rect): real {
        return box.y + box.height;
    }
    function rightOf(box: rect): real {
        return box.x + box.width;
    }
    /// One stands above the other with that much between them.
    function checkGap(upper: rect, lower: rect, gap: real, what: string): void {
        root.near(lower.y - root.bottomOf(upper), gap, what);
    }
    /// One stands before the other with that much between them.
    function checkSpace(left: rect, right: rect, space: real, what: string): void {
        root.near(right.x - root.rightOf(left), space, what);
    }
    function checkSameMiddle(first: rect, second: rect, what: string): void {
        root.near(first.y + first.height / 2, second.y + second.height / 2, what);
    }
    function checkSameBaseline(first: string, second: string): void {
        const one = root.label(first);
        const other = root.label(second);
        root.near(root.place(one).y + one.baselineOffset,
                  root.place(other).y + other.baselineOffset, first + ", " + second);
    }
    /// A button's text stands in its middle, with that padding around it.
    function checkPadding(text: string, horizontal: real, vertical: real): void {
        const frame = root.buttonBox(text);
        const inner = root.box(text);
        root.near(inner.x - frame.x, horizontal, text + ", left");
        root.near(root.rightOf(frame) - root.rightOf(inner), horizontal, text + ", right");
        root.near(inner.y - frame.y, vertical, text + ", top");
        root.near(root.bottomOf(frame) - root.bottomOf(inner), vertical, text + ", bottom");
    }

    function colorAt(x: real, y: real): string {
        return root.picture.pixel(Math.floor(x), Math.floor(y)).toString();
    }
    /// Colours that may differ by the rounding of a mixture.
    function checkColor(found: string, wanted: string, what: string): void {
        const part = (color, from) => parseInt(color.slice(from, from + 2), 16);
        root.verify([1, 3, 5].every(from => Math.abs(part(found, from) - part(wanted, from)) <= 1),
                    what + ": " + found + ", not " + wanted);
    }
    /// A panel that is scrolled changes no pixel above or below its place.
    function checkClips(flickable: Flickable): void {
        const pane = root.place(flickable);
        const range = flickable.contentHeight - flickable.height;
        root.verify(range > 0, "there is something to scroll");
        const before = root.picture;
        const rows = [];
        for (let i = 0; i < 24; ++i) {
            rows.push(Math.round(pane.y) - 1 - i, Math.round(root.bottomOf(pane)) + i);
        }
        const seen = rows.filter(y => y >= 0 && y < before.height);
        root.verify(seen.length >= 24);
        let changed = false;
        for (const y of [7, range / 3, range / 2, range - 5, range]) {
            flickable.contentY = y;
            const after = root.grabImage(root.item);
            for (let x = Math.ceil(pane.x); x < root.rightOf(pane) - 1; x += 2) {
                for (const row of seen) {
                    if (!Qt.colorEqual(after.pixel(x, row), before.pixel(x, row))) {
                        root.fail("at " + x + ", " + row + ", scrolled by " + y);
                    }
                }
                changed = changed || !Qt.colorEqual(after.pixel(x, Math.round(pane.y) + 30),
                                                    before.pixel(x, Math.round(pane.y) + 30));
            }
        }
        root.verify(changed, "it has scrolled");
    }
    /// All pixels along the edge of a box are of one colour, and those inside of it of another.
    function checkFrame(box: rect, border: string, fill: string, what: string): void {
        const left = Math.round(box.x);
        const top = Math.round(box.y);
        const last = {x: Math.round(root.rightOf(box)) - 1, y: Math.round(root.bottomOf(box)) - 1};
        const middle = {x: (left + last.x) / 2, y: (top + last.y) / 2};
        for (const at of [[left, top], [last.x, top], [left, last.y], [last.x, last.y],
                          [middle.x, top], [middle.x, last.y], [left, middle.y],
                          [last.x, middle.y]]) {
            root.checkColor(root.colorAt(at[0], at[1]), border, what + ", border at " + at);
        }
        for (const at of [[left + 1, top + 1], [last.x - 1, top + 1], [left + 1, last.y - 1],
                          [last.x - 1, last.y - 1]]) {
            root.checkColor(root.colorAt(at[0], at[1]), fill, what + ", inside at " + at);
        }
    }
    function checkFill(box: rect, fill: string, what: string): void {
        root.checkFrame(box, fill, fill, what);
    }
    function checkFilledButton(text: string, horizontal: real, vertical: real): void {
        root.checkText(text, root.styles.label, 3.0, root.palette.background);
        root.checkPadding(text, horizontal, vertical);
        root.checkFill(root.buttonBox(text), root.palette.primary, text);
    }
    function checkOutlinedButton(text: string, color: string, around: string): void {
        root.checkText(text, root.styles.label, 3.0, color);
        root.checkPadding(text, 24, 14);
        root.checkFrame(root.buttonBox(text), root.palette.outlineVariant, around, text);
    }

    /// The nearest item around this one that cuts off what stands out of it.
    function clipping(item: Item): Item {
        let around = item.parent;
        while (around !== root.item && !around.clip) {
            around = around.parent;
        }
        return around;
    }
    function shownTexts(): var {
        const found = [];
        const open = [root.item];
        while (open.length > 0) {
            const next = open.pop();
            if (next.visible) {
                if (next.lineCount !== undefined && next.text.length > 0) {
                    found.push(next);
                }
                open.push(...Array.from(next.children));
            }
        }
        return found;
    }
    /// Every text and button keeps inside its screen (or the panel that scrolls it), no two
    /// texts meet, and no text is wider than its place. Only the texts named may be cut short.
    function checkNothingCollides(cutShort: var): void {
        const texts = root.shownTexts();
        root.verify(texts.length > 0);
        texts.forEach((text, index) => {
            const name = text.text.slice(0, 40);
            const around = root.clipping(text);
            const own = root.place(text);
            const frame = root.place(around);
            root.verify(own.x >= frame.x - 0.5 && root.rightOf(own) <= root.rightOf(frame) + 0.5,
                        name + " leaves its screen sideways: " + own + " of " + frame);
            root.verify(around !== root.item
                        || (own.y >= -0.5 && root.bottomOf(own) <= root.item.height + 0.5),
                        name + " leaves its screen: " + own);
            // What is added after the last letter is not seen.
            const seen = text.contentWidth - Math.max(0, text.font.letterSpacing);
            root.verify(seen <= text.width + 1, name + " is wider than its place: "
                        + seen + " of " + text.width);
            root.verify(!text.truncated || cutShort.includes(text.text),
                        name + " is cut short");
            for (const other of texts.slice(index + 1)) {
                const second = root.place(other);
                root.verify(own.x + 0.5 >= root.rightOf(second) || second.x + 0.5 >= root.rightOf(own)
                            || own.y + 0.5 >= root.bottomOf(second)
                            || second.y + 0.5 >= root.bottomOf(own)
                            || root.clipping(other) !== around,
                            name + " meets " + other.text.slice(0, 40));
            }
        });
    }
}
