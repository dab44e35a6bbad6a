// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// What controls look like while they are pointed at, pressed, focused or disabled.
ScreenTest {
    id: root

    name: "ControlStates"
    screen: Component {
        Item {
            id: panel

            property int clicks: 0

            Box {
                anchors.fill: parent
                color: Theme.color.background
            }
            Column {
                x: 40
                y: 40
                spacing: 20

                FilledButton {
                    objectName: "filled"
                    text: "FILLED"
                    onClicked: ++panel.clicks
                }
                OutlinedButton {
                    objectName: "outlined"
                    text: "OUTLINED"
                    onClicked: ++panel.clicks
                }
                TextButton {
                    objectName: "plain"
                    text: "PLAIN"
                    onClicked: ++panel.clicks
                }
                Row {
                    ModeButton {
                        objectName: "chosen"
                        text: "CHOSEN"
                        checked: true
                        onClicked: ++panel.clicks
                    }
                    ModeButton {
                        objectName: "other"
                        text: "OTHER"
                        checked: false
                        onClicked: ++panel.clicks
                    }
                }
                ToggleSwitch {
                    objectName: "off"
                    text: "OFF"
                    checked: false
                    onClicked: ++panel.clicks
                }
                ToggleSwitch {
                    objectName: "on"
                    text: "ON"
                    checked: true
                    onClicked: ++panel.clicks
                }
                TextEntry {
                    objectName: "field"
                    name: "FIELD"
                    value: "text"
                }
            }
        }
    }

    readonly property color background: Theme.color.background

    function init(): void {
        show({});
        // A press on nothing: from here on the user works with the pointer.
        mouseMove(root.item, 1, 1);
        mouseClick(root.item, 1, 1);
    }

    function control(name: string): Item {
        return findChild(root.item, name);
    }
    function pixel(item: Item, x: real, y: real): color {
        const at = item.mapToItem(root, x, y);
        return grabImage(root).pixel(at.x, at.y);
    }
    function compareColor(actual: color, expected: color, what: string): void {
        verify(["r", "g", "b"].every(part => Math.abs(actual[part] - expected[part]) < 1.6 / 255),
               what + ": " + actual + ", not " + expected);
    }
    function layered(fill: color, content: color, pointedAt: bool, pressed: bool): color {
        return Qt.tint(fill, Theme.stateLayer(content, pointedAt, pressed));
    }

    function test_theLayerIsSeen() {
        const fills = [
            [Theme.color.primary, Theme.color.background],
            [Theme.color.background, Theme.color.onSurface],
            [Theme.color.surfaceContainer, Theme.color.onSurface],
            [Theme.color.outlineVariant, Theme.color.onSurface],
        ];
        for (const [fill, content] of fills) {
            const rest = fill.hslLightness;
            const pointedAt = layered(fill, content, true, false).hslLightness;
            const pressed = layered(fill, content, true, true).hslLightness;
            verify(Math.abs(pointedAt - rest) > 0.05, fill + ": " + pointedAt);
            verify(Math.abs(pressed - pointedAt) > 0.05, fill + ": " + pressed);
            verify(Qt.colorEqual(layered(fill, content, false, false), fill));
        }
    }

    function test_fills_data() {
        const color = Theme.color;
        // Where on the control there is nothing but its fill.
        return [
            {tag: "filled", x: 4, y: 4, fill: color.primary, content: color.background},
            {tag: "outlined", x: 4, y: 4, fill: background, content: color.onSurface},
            {tag: "plain", x: -6, y: 4, fill: background, content: color.onSurface},
            {tag: "chosen", x: 4, y: 4, fill: color.primary, content: color.background},
            {tag: "other", x: 4, y: 4, fill: color.surfaceContainer, content: color.onSurface},
            {tag: "off", x: 22, y: 9, fill: color.outlineVariant, content: color.onSurface},
            {tag: "on", x: 9, y: 9, fill: color.primary, content: color.background},
        ];
    }
    function test_fills(data) {
        const it = control(data.tag);
        const look = () => pixel(it, data.x, data.y);
        const like = (pointedAt, pressed) =>
            layered(data.fill, data.content, pointedAt, pressed);

        compareColor(look(), data.fill, "at rest");
        mouseMove(it, 5, 5);
        compareColor(look(), like(true, false), "pointed at");
        mousePress(it, 5, 5);
        compareColor(look(), like(true, true), "pressed");
        mouseMove(it, 5, -15);
        compareColor(look(), data.fill, "left with the button down");
        mouseRelease(it, 5, -15);
        compareColor(look(), data.fill, "released outside");
        compare(item.clicks, 0);

        it.forceActiveFocus();
        keyPress(Qt.Key_Space);
        compareColor(look(), like(false, true), "pressed with a key");
        compare(item.clicks, 0);
        keyRelease(Qt.Key_Space);
        compareColor(look(), data.fill, "the key released");
        compare(item.clicks, 1);
    }

    function test_aKeyHeldElsewhereDoesNotClick() {
        control("filled").forceActiveFocus();
        keyPress(Qt.Key_Space);
        control("outlined").forceActiveFocus();
        keyRelease(Qt.Key_Space);
        compare(item.clicks, 0);
        verify(!control("filled").pressed);
    }

    function test_disabledWhilePressed() {
        const it = control("outlined");
        mousePress(it, 5, 5);
        verify(it.pressed);
        it.enabled = false;
        verify(!it.pressed);
        verify(!it.pointedAt);
        mouseRelease(it, 5, 5);
        compare(item.clicks, 0);
    }

    function test_theOtherMouseButtonsDoNothing() {
        mouseClick(control("filled"), 5, 5, Qt.RightButton);
        compare(item.clicks, 0);
    }

    function test_disabled_data() {
        return ["outlined", "plain", "chosen", "other", "off", "on", "field"].map(
            name => ({tag: name}));
    }
    function test_disabled(data) {
        const it = control(data.tag);
        it.enabled = false;
        compare(it.opacity, Theme.disabledOpacity);
        mouseMove(it, 5, 5);
        verify(!it.pointedAt);
        keyClick(Qt.Key_Tab);
        for (let i = 0; i < 10; ++i) {
            verify(!it.activeFocus && !it.inputFocus, "it takes no focus");
            keyClick(Qt.Key_Tab);
        }
    }

    function test_disabledFilledButton() {
        const it = control("filled");
        it.enabled = false;
        compareColor(pixel(it, 4, 4), Theme.color.surfaceContainer, "fill");
        compare(it.opacity, 1);
    }

    function test_ring_data() {
        return ["filled", "outlined", "plain", "chosen", "other", "off", "on"].map(
            name => ({tag: name}));
    }
    function test_ring(data) {
        const it = control(data.tag);
        const ring = () => [[-3, 6], [it.width + 2, 6], [6, -3], [6, it.height + 2]].map(
            at => pixel(it, at[0], at[1]));
        const shown = () => ring().every(
            color => Qt.colorEqual(color, Theme.color.primary));
        it.forceActiveFocus();
        verify(!shown(), "for the pointer");
        keyClick(Qt.Key_Shift);
        keyClick(Qt.Key_S, Qt.ControlModifier);
        verify(!shown(), "for modifiers");
        keyClick(Qt.Key_Down);
        verify(shown(), "for the keyboard: " + ring());
        for (const at of [[-1, 6], [it.width, 6], [6, -1], [6, it.height]]) {
            compareColor(pixel(it, at[0], at[1]), background, "the band inside");
        }
        mouseClick(root.item, 1, 1);
        verify(!shown(), "for the pointer again");
        keyClick(Qt.Key_Down);
        control("field").forceActiveFocus();
        verify(!shown(), "elsewhere");
    }

    Component {
        id: panel
        ScrollPanel {
            width: 200
            height: 100
            Item {
                implicitHeight: 300
            }
        }
    }
    function test_scrollBar() {
        const it = createTemporaryObject(panel, root, {x: 40, y: 10});
        const bar = Array.from(it.children).find(each => each.flickable !== undefined);
        const thumb = () => pixel(bar, 5, 10);
        const rest = Theme.color.onSurfaceVariant;
        compareColor(thumb(), rest, "at rest");
        mouseMove(bar, 5, 10);
        compareColor(thumb(), Theme.color.onSurface, "pointed at");
        mousePress(bar, 5, 10);
        compareColor(thumb(), Theme.color.primary, "pressed");
        mouseRelease(bar, 5, 10);
        mouseMove(root.item, 1, 1);
        tryVerify(() => Qt.colorEqual(thumb(), rest));
        const edge = () => [pixel(it, 1, 50), pixel(it, 100, 1), pixel(it, 198, 50)];
        bar.forceActiveFocus();
        edge().forEach(color => compareColor(color, Theme.color.surfaceContainerLow, "edge"));
        keyClick(Qt.Key_Down);
        edge().forEach(color => compareColor(color, Theme.color.primary, "edge with the keyboard"));
        bar.enabled = false;
        compare(bar.opacity, Theme.disabledOpacity);
    }

    function test_fieldsBorder() {
        const it = control("field");
        const input = findChild(it, "input");
        const rest = Qt.alpha(Theme.color.outlineVariant, 0.6);
        tryVerify(() => Qt.colorEqual(it.border.color, rest));
        mouseMove(it, 4, 4);
        verify(Qt.colorEqual(it.border.color, Theme.color.onSurfaceVariant), "pointed at");
        mouseMove(root.item, 1, 1);
        tryVerify(() => Qt.colorEqual(it.border.color, rest));
        input.forceActiveFocus();
        verify(Qt.colorEqual(it.border.color, rest), "focused for somebody with a pointer");
        keyClick(Qt.Key_End);
        verify(Qt.colorEqual(it.border.color, Theme.color.primary), "focused for the keyboard");
        mouseClick(root.item, 1, 1);
        verify(Qt.colorEqual(it.border.color, rest));
    }

    function test_fieldsArePressedInto_data() {
        return [{tag: "on the text", x: 15}, {tag: "beside it", x: 3}];
    }
    function test_fieldsArePressedInto(data) {
        const it = control("field");
        const input = findChild(it, "input");
        mouseClick(it, data.x, it.height / 2);
        verify(input.activeFocus);
        verify(Qt.colorEqual(it.border.color, Theme.color.primary));
        control("filled").forceActiveFocus();
        verify(!Qt.colorEqual(it.border.color, Theme.color.primary));
        input.forceActiveFocus();
        verify(!Qt.colorEqual(it.border.color, Theme.color.primary), "not pressed into again");
    }
}
