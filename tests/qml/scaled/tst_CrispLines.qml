// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// Every line is whole device pixels wide, as wide on each side, and of one colour. Run once
/// for each scale factor.
TestCase {
    id: root

    name: "CrispLines"
    // A grab holds only as many pixels as the item has units, the upper left ones.
    width: 640
    height: 480
    visible: true
    when: windowShown

    readonly property real ratio: Screen.devicePixelRatio

    Rectangle {
        anchors.fill: parent
        color: Theme.color.background
    }

    Component {
        id: box
        Box {
            width: 60
            height: 40
            color: Theme.color.surfaceContainer
            border.width: 1
            border.color: Theme.color.primary
        }
    }
    Component {
        id: thick
        Box {
            width: 60
            height: 40
            border.width: 2
            border.color: Theme.color.primary
        }
    }
    Component {
        id: outlined
        OutlinedButton {
            text: "OUTLINED"
        }
    }
    Component {
        id: entry
        TextEntry {
            name: "ENTRY"
            value: ""
        }
    }
    Component {
        id: ringed
        OutlinedButton {
            text: "RINGED"
            Component.onCompleted: forceActiveFocus()
        }
    }
    Component {
        id: zone
        DropZone {
            width: 200
            height: 150
        }
    }
    Component {
        id: photo
        SlatePhotoPane {
            width: 250
            height: 150
            slateImage: ""
        }
    }
    Component {
        id: divider
        Divider {
            width: 100
        }
    }
    Component {
        id: scrolled
        ScrollPanel {
            width: 200
            height: 100
            padding: 0
            spacing: 9.3
            Repeater {
                model: 40
                Divider {
                    width: 200
                }
            }
        }
    }

    Component {
        id: pill
        Pill {
            width: 30
            height: 18
            color: Theme.color.primary
        }
    }
    Component {
        id: scene
        Item {
            width: 300
            height: 100
            Box {
                anchors.fill: parent
                color: Theme.color.surfaceContainerLow
            }
            // Nothing of these changes.
            StyledText {
                x: 190
                y: 40
                text: "Unchanged"
            }
            Divider {
                x: 190
                y: 36.3
                width: 90
            }
            DatePicker {
                objectName: "picker"
                x: 20.3
                y: 10.5
                width: 150
                name: "DATE"
                value: "2026-05-01"
            }
            ToggleSwitch {
                objectName: "switch"
                x: 200.25
                y: 15.7
                text: ""
                checked: false
            }
        }
    }

    /// Lengths of what has one colour, in device pixels, along a line through the picture.
    function runs(image: var, x: real, y: real, dx: int, dy: int, length: real): var {
        const found = [];
        const from = Qt.point(Math.round(x * ratio) + Math.min(0, dx),
                              Math.round(y * ratio) + Math.min(0, dy));
        for (let i = 0; i < Math.round(length * ratio); ++i) {
            const color = image.pixel(from.x + i * dx, from.y + i * dy).toString();
            if (found.length > 0 && found[found.length - 1].color === color) {
                ++found[found.length - 1].length;
            } else {
                found.push({color: color, length: 1});
            }
        }
        return found;
    }
    /// What the window shows of a colour that lies over another one.
    function over(below: color, above: color): string {
        return Qt.tint(below, above).toString();
    }
    function near(a: string, b: string): bool {
        const one = Qt.color(a);
        const other = Qt.color(b);
        return ["r", "g", "b"].every(part => Math.abs(one[part] - other[part]) < 1.5 / 255);
    }
    function pixels(units: real): int {
        return Math.max(1, Math.floor(units * ratio));
    }
    function checkSides(image: var, frame: rect, line: string, units: real): void {
        const ways = [
            ["left", frame.x - 3, frame.y + 4, 1, 0],
            ["right", frame.x + frame.width + 3, frame.y + 4, -1, 0],
            ["top", frame.x + 4, frame.y - 3, 0, 1],
            ["bottom", frame.x + 4, frame.y + frame.height + 3, 0, -1],
        ];
        for (const [side, x, y, dx, dy] of ways) {
            const found = runs(image, x, y, dx, dy, 7);
            verify(found.length >= 3, side + ": " + JSON.stringify(found));
            verify(near(found[1].color, line), side + ": " + found[1].color + ", not " + line);
            compare(found[1].length, pixels(units), side);
        }
    }

    function test_frames_data() {
        const frames = [
            {name: "box", what: box, line: Theme.color.primary, units: 1},
            {name: "thick box", what: thick, line: Theme.color.primary, units: 2},
            {name: "outlined button", what: outlined, line: Theme.color.outlineVariant, units: 1},
            {name: "field", what: entry, units: 1, line: over(
                Theme.color.background, Qt.alpha(Theme.color.outlineVariant, 0.6))},
            {name: "drop zone", what: zone, line: Theme.color.outlineVariant, units: 1},
        ];
        const rows = [];
        for (const each of frames) {
            for (const shift of [0, 0.25, 0.3, 0.5, 0.77]) {
                rows.push(Object.assign({tag: each.name + " at " + shift, shift: shift}, each));
            }
        }
        return rows;
    }
    function test_frames(data) {
        const item = createTemporaryObject(data.what, root,
                                           {x: 20 + data.shift, y: 30 + data.shift});
        checkSides(grabImage(root), Qt.rect(item.x, item.y, item.width, item.height),
                   data.line.toString(), data.units);
    }

    function test_ring_data() {
        return [0, 0.25, 0.5, 0.77].map(shift => ({tag: "at " + shift, shift: shift}));
    }
    function test_ring(data) {
        const item = createTemporaryObject(ringed, root,
                                           {x: 20 + data.shift, y: 30 + data.shift});
        keyClick(Qt.Key_Down);
        checkSides(grabImage(root),
                   Qt.rect(item.x - 4, item.y - 4, item.width + 8, item.height + 8),
                   Theme.color.primary.toString(), 2);
    }

    function test_photoBox() {
        const pane = createTemporaryObject(photo, root, {x: 20.3, y: 30.3});
        const frame = Array.from(pane.children).find(each => each.border !== undefined);
        checkSides(grabImage(root), frame.mapToItem(root, 0, 0, frame.width, frame.height),
                   Theme.color.outlineVariant.toString(), 1);
    }

    function test_dividers_data() {
        return [0, 0.25, 0.3, 0.5, 0.77].map(shift => ({tag: "at " + shift, shift: shift}));
    }
    function test_dividers(data) {
        const item = createTemporaryObject(divider, root, {x: 20, y: 30 + data.shift});
        const found = runs(grabImage(root), 50, 25, 0, 1, 10);
        compare(found.length, 3, JSON.stringify(found));
        compare(found[1].color, Theme.color.outlineVariant.toString());
        compare(found[1].length, pixels(1));
    }

    function test_scrolledLines() {
        const panel = createTemporaryObject(scrolled, root, {x: 20, y: 30});
        const flickable = findChild(panel, "flickable");
        for (const position of [3.3, 7.5, 11.9]) {
            flickable.contentY = position;
            const lines = runs(grabImage(root), 50, 31, 0, 1, 98)
                .filter(run => run.color !== Theme.color.surfaceContainerLow.toString());
            verify(lines.length >= 8, JSON.stringify(lines));
            // The first and the last may be cut by the panel's edge.
            for (const line of lines.slice(1, -1)) {
                compare(line.color, Theme.color.outlineVariant.toString());
                compare(line.length, pixels(1));
            }
        }
    }

    /// A frame in which only some of it changes leaves the rest as it was.
    function test_changesLeaveTheRestWhole() {
        const it = createTemporaryObject(scene, root);
        const before = grabImage(root);
        const picker = findChild(it, "picker");
        const change = on => {
            if (on) {
                picker.takeFocus();
                keyClick(Qt.Key_End);
            } else {
                root.forceActiveFocus();
            }
            findChild(it, "switch").checked = on;
            picker.enabled = !on;
            grabImage(root);
            picker.enabled = true;
        };
        change(true);
        grabImage(root);
        change(false);
        const after = grabImage(root);
        let different = [];
        for (let y = 0; y < 60 * ratio; ++y) {
            for (let x = 0; x < 300 * ratio; ++x) {
                if (!Qt.colorEqual(before.pixel(x, y), after.pixel(x, y))) {
                    different.push([x, y]);
                }
            }
        }
        compare(different.length, 0, JSON.stringify(different.slice(0, 20)));
    }

    function test_pillsAreRound_data() {
        return [0, 0.25, 0.3, 0.5, 0.77].map(shift => ({tag: "at " + shift, shift: shift}));
    }
    function test_pillsAreRound(data) {
        const it = createTemporaryObject(pill, root, {x: 20 + data.shift, y: 30 + data.shift});
        const image = grabImage(root);
        const ink = Theme.color.primary.toString();
        const widths = [];
        for (let y = 25; y < 55; y += 1 / ratio) {
            const found = runs(image, 10, y, 1, 0, 60).filter(run => run.color === ink);
            verify(found.length <= 1, "no gap at " + y);
            if (found.length === 1) {
                widths.push(found[0].length);
            }
        }
        fuzzyCompare(widths.length, 18 * ratio, 1.01);
        const widest = widths.indexOf(Math.max(...widths));
        widths.forEach((width, i) => {
            verify(i === 0 || (i <= widest ? width >= widths[i - 1] : width <= widths[i - 1]),
                   "it widens to the middle: " + widths);
            fuzzyCompare(width, widths[widths.length - 1 - i], 2.01, "as below as above");
        });
    }
}
