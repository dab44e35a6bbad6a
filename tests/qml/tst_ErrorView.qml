// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "ErrorView"
    screen: Component {
        ErrorView {
            property int resets: 0

            message: "It broke."
            onReset: ++resets
        }
    }

    function panel(): Item {
        return findChild(item, "flickable").parent;
    }

    function test_texts() {
        show({});
        compareStyle("ERROR", Theme.color.tertiary, 3.5, Theme.font.label);
        compareStyle("INGESTION FAILED", Theme.color.onSurface, -1.0, Theme.font.headline);
        compareStyle("It broke.", Theme.color.onSurfaceVariant, 0, Theme.font.mono);
        compareStyle("TRY AGAIN", Theme.color.background, 3.0, Theme.font.label);
    }

    function test_messageIsShownAsItIs() {
        const message = "<b>%1</b> &amp;\n\ttab \\n";
        show({message: message});
        verify(shows(message));
    }

    function test_panelFitsTheMessage() {
        show({});
        compare(place(panel()).width, item.width);
        fuzzyCompare(panel().height, label("It broke.").height + 32, 1);
        compare(place(label("It broke.")).x, 16);
    }

    function test_emptyMessageKeepsItsPanel() {
        show({message: ""});
        verify(panel().visible);
        verify(panel().height >= 32);
    }

    function test_longMessageScrolls() {
        const message = "line\n".repeat(300);
        show({message: message});
        const flickable = findChild(item, "flickable");
        const again = place(button("TRY AGAIN"));
        verify(again.y + again.height <= item.height + 0.5);
        verify(flickable.contentHeight > flickable.height);
        button("TRY AGAIN").forceActiveFocus();
        keyClick(Qt.Key_Backtab);
        keyClick(Qt.Key_Down);
        compare(flickable.contentY, 40);
        keyClick(Qt.Key_PageDown);
        compare(flickable.contentY, 40 + flickable.height);
        keyClick(Qt.Key_PageUp);
        keyClick(Qt.Key_PageUp);
        compare(flickable.contentY, 0);
    }

    function test_wordsWithoutEndWrap() {
        show({message: "w".repeat(500)});
        verify(label("w".repeat(500)).contentWidth <= item.width - 32);
    }

    function test_tryAgain() {
        show({});
        compare(place(button("TRY AGAIN")).x, 0);
        click("TRY AGAIN");
        compare(item.resets, 1);
    }
}
