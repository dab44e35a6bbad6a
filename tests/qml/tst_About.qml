// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "About"
    width: 720
    height: 560
    screen: Component {
        Item {
            property int lost: 0

            OutlinedButton {
                text: "BEHIND"
            }
            AboutDialog {
                objectName: "about"
                anchors.fill: parent
                version: "1.2.3"
                onFocusLost: ++parent.lost
            }
        }
    }

    function about(): Item {
        return findChild(root.item, "about");
    }

    function test_texts() {
        show({});
        verify(!shows("Version 1.2.3"));
        about().open();
        compareStyle("Quillmark", Theme.color.onSurface, 0, Theme.font.title);
        compareStyle("Version 1.2.3", Theme.color.onSurfaceVariant, 0, Theme.font.mono);
        compareStyle("Finds the slate frame in a folder of scans and writes what it says "
                     + "into every image.", Theme.color.onSurface, 0, Theme.font.body);
        compareStyle("© 2026 Quillmark authors\nMIT License", Theme.color.onSurfaceVariant, 0,
                     Theme.font.body);
        compareStyle("CLOSE", Theme.color.background, 3.0, Theme.font.label);
    }

    function test_standsInTheMiddle() {
        show({});
        about().open();
        waitForRendering(item);
        const box = place(button("CLOSE").parent.parent.parent);
        fuzzyCompare(box.x, item.width - box.x - box.width, 1);
        fuzzyCompare(box.y, item.height - box.y - box.height, 1);
        verify(box.y > 40);
        const last = place(button("CLOSE"));
        compare(last.x + last.width, box.x + box.width - 32);
        compare(last.y + last.height, box.y + box.height - 32);
    }

    function test_coversWhatIsBehind() {
        show({});
        let presses = 0;
        button("BEHIND").clicked.connect(() => ++presses);
        about().open();
        mouseClick(item, 20, 20);
        compare(presses, 0);
        verify(about().visible);
        click("CLOSE");
        mouseClick(item, 20, 20);
        compare(presses, 1);
    }

    function test_givesTheKeyboardBack() {
        show({});
        button("BEHIND").forceActiveFocus();
        about().open();
        verify(button("CLOSE").activeFocus);
        keyClick(Qt.Key_Escape);
        verify(button("BEHIND").activeFocus);
        compare(item.lost, 0);
    }

    function test_tellsWhenNobodyCanHaveTheKeyboardBack() {
        show({});
        button("BEHIND").forceActiveFocus();
        about().open();
        button("BEHIND").enabled = false;
        keyClick(Qt.Key_Return);
        verify(!about().visible);
        compare(item.lost, 1);
    }
}
