// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "Controls"
    screen: Component {
        Column {
            id: column
            property int clicks: 0
            property bool on: false

            spacing: 20
            FilledButton {
                text: "FILLED"
                onClicked: ++column.clicks
            }
            OutlinedButton {
                text: "OUTLINED"
                onClicked: ++column.clicks
            }
            ToggleSwitch {
                objectName: "switch"
                text: "SWITCH"
                checked: column.on
                onToggled: checked => column.on = checked
            }
        }
    }

    function test_keysPressButtons_data() {
        return [
            {tag: "space", key: Qt.Key_Space},
            {tag: "return", key: Qt.Key_Return},
            {tag: "enter", key: Qt.Key_Enter},
        ];
    }
    function test_keysPressButtons(data) {
        show({});
        button("FILLED").forceActiveFocus();
        keyClick(data.key);
        compare(item.clicks, 1);
    }

    function test_disabledButtonsDoNothing() {
        show({});
        button("FILLED").enabled = false;
        click("FILLED");
        button("FILLED").press();
        compare(item.clicks, 0);
    }

    function test_tabVisitsEveryControlInOrder() {
        show({});
        button("FILLED").forceActiveFocus();
        keyClick(Qt.Key_Tab);
        verify(button("OUTLINED").activeFocus);
        keyClick(Qt.Key_Tab);
        verify(findChild(item, "switch").activeFocus);
    }

    function test_keysToggleTheSwitch() {
        show({});
        const control = findChild(item, "switch");
        control.forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(item.on, true);
        keyClick(Qt.Key_Return);
        compare(item.on, false);
    }
}
