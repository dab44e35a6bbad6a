// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "BackupModePicker"
    screen: Component {
        BackupModePicker {
            id: picker
            property bool refuses: false

            selection: "backup-originals"
            onPicked: rawMode => {
                if (!picker.refuses) {
                    picker.selection = rawMode;
                }
            }
        }
    }

    function test_arrowsChooseAndGoRound_data() {
        return [
            {tag: "right", key: Qt.Key_Right, order: ["WRITE COPIES", "IN PLACE", "BACKUP ORIGINALS"]},
            {tag: "down", key: Qt.Key_Down, order: ["WRITE COPIES", "IN PLACE", "BACKUP ORIGINALS"]},
            {tag: "left", key: Qt.Key_Left, order: ["IN PLACE", "WRITE COPIES", "BACKUP ORIGINALS"]},
            {tag: "up", key: Qt.Key_Up, order: ["IN PLACE", "WRITE COPIES", "BACKUP ORIGINALS"]},
        ];
    }
    function test_arrowsChooseAndGoRound(data) {
        failOnWarning(/.?/);
        show({});
        button("BACKUP ORIGINALS").forceActiveFocus();
        for (const title of data.order) {
            keyClick(data.key);
            verify(button(title).activeFocus, title);
            verify(button(title).checked, title);
        }
    }

    function test_onlyTheChosenOneIsAStop() {
        show({});
        verify(button("BACKUP ORIGINALS").activeFocusOnTab);
        verify(!button("WRITE COPIES").activeFocusOnTab);
        click("IN PLACE");
        verify(button("IN PLACE").activeFocusOnTab);
        verify(!button("BACKUP ORIGINALS").activeFocusOnTab);
    }

    function test_theKeyboardStaysWithTheChosenOne() {
        failOnWarning(/.?/);
        show({});
        click("WRITE COPIES");
        verify(!button("WRITE COPIES").activeFocus, "the keyboard is elsewhere");
        button("WRITE COPIES").forceActiveFocus();
        click("IN PLACE");
        verify(button("IN PLACE").activeFocus);
        verify(!button("WRITE COPIES").activeFocusOnTab);
    }

    function test_theOwnerDecides() {
        show({refuses: true});
        button("BACKUP ORIGINALS").forceActiveFocus();
        keyClick(Qt.Key_Right);
        compare(item.selection, "backup-originals");
    }
}
