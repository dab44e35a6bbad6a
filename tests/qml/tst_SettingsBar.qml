// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "SettingsBar"
    screen: Component {
        SettingsBar {
            property string lastMode
            property int switched: 0

            backupMode: "backup-originals"
            recursive: false
            onBackupModePicked: rawMode => lastMode = rawMode
            onRecursiveToggled: recursive => switched += recursive ? 1 : 100
        }
    }

    function test_texts() {
        show({width: 900});
        compareStyle("BACKUP MODE", Theme.color.onSurfaceVariant, 2.5, Theme.font.label);
        compareStyle("RECURSE INTO SUBFOLDERS", Theme.color.onSurfaceVariant, 2.5,
                     Theme.font.label);
    }

    function test_showsTheSelectedMode_data() {
        return [
            {tag: "backup-originals", title: "BACKUP ORIGINALS"},
            {tag: "write-copies", title: "WRITE COPIES"},
            {tag: "none", title: "IN PLACE"},
        ];
    }
    function test_showsTheSelectedMode(data) {
        show({backupMode: data.tag});
        for (const title of ["BACKUP ORIGINALS", "WRITE COPIES", "IN PLACE"]) {
            const selected = title === data.title;
            compare(button(title).checked, selected, title);
            compareStyle(title, selected ? Theme.color.background : Theme.color.onSurface, 2.5,
                         Theme.font.label);
        }
    }

    function test_modesAreAStripInOrder() {
        show({width: 900});
        item.height = item.implicitHeight;
        waitForRendering(item);
        const first = place(button("BACKUP ORIGINALS"));
        const second = place(button("WRITE COPIES"));
        const third = place(button("IN PLACE"));
        compare(second.x, first.x + first.width);
        compare(third.x, second.x + second.width);
        fuzzyCompare(first.width, label("BACKUP ORIGINALS").implicitWidth + 28, 1);
        fuzzyCompare(first.height, label("BACKUP ORIGINALS").implicitHeight + 20, 1);
        const caption = place(label("BACKUP MODE"));
        compare(caption.x, 0);
        fuzzyCompare(first.x, caption.x + caption.width + 32, 1);
    }

    function test_aModeIsPicked() {
        show({});
        click("IN PLACE");
        compare(item.lastMode, "none");
        button("WRITE COPIES").forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(item.lastMode, "write-copies");
        compare(item.backupMode, "backup-originals", "the owner decides");
    }

    function test_theSwitchAsksForTheOtherPosition() {
        show({});
        mouseClick(label("RECURSE INTO SUBFOLDERS"));
        compare(item.switched, 1);
        item.recursive = true;
        mouseClick(label("RECURSE INTO SUBFOLDERS"));
        compare(item.switched, 101);
    }

    function test_everythingFitsTheSmallestWindow() {
        show({});
        const last = place(label("RECURSE INTO SUBFOLDERS"));
        verify(last.x + last.width <= item.width);
        for (const text of ["BACKUP MODE", "WRITE COPIES", "RECURSE INTO SUBFOLDERS"]) {
            verify(label(text).contentWidth <= label(text).width + 0.5, text);
        }
    }
}
