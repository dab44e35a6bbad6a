// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// What can be done with the words of a failure.
ScreenTest {
    id: root

    name: "ErrorText"
    screen: Component {
        ErrorView {
            message: "First line\nsecond line"
        }
    }

    function flickable(): Item {
        return findChild(root.item, "flickable");
    }
    function text(): Item {
        return label(root.item.message);
    }

    function test_theKeyboardSelects() {
        show({});
        text().forceActiveFocus();
        keyClick(Qt.Key_A, Qt.ControlModifier);
        compare(text().selectedText, "First line\nsecond line");
        keyClick(Qt.Key_Home, Qt.ControlModifier);
        compare(text().selectedText, "");
        for (let i = 0; i < 5; ++i) {
            keyClick(Qt.Key_Right, Qt.ShiftModifier);
        }
        compare(text().selectedText, "First");
        keyClick(Qt.Key_Home, Qt.ControlModifier);
        keyClick(Qt.Key_Down, Qt.ShiftModifier);
        compare(text().selectedText, "First line\n");
    }

    function test_thePointerSelects() {
        show({});
        mouseDoubleClickSequence(text(), 5, 5);
        compare(text().selectedText, "First");
        mousePress(text(), 1, 5);
        mouseMove(text(), 40, text().height - 3);
        mouseMove(text(), text().width - 2, text().height - 3);
        mouseRelease(text(), text().width - 2, text().height - 3);
        compare(text().selectedText, "First line\nsecond line");
    }

    function test_cannotBeChanged() {
        show({});
        text().forceActiveFocus();
        keyClick(Qt.Key_A, Qt.ControlModifier);
        for (const key of [Qt.Key_X, Qt.Key_Delete, Qt.Key_Backspace, Qt.Key_Space]) {
            keyClick(key);
        }
        keyClick(Qt.Key_X, Qt.ControlModifier);
        keyClick(Qt.Key_V, Qt.ControlModifier);
        compare(text().text, "First line\nsecond line");
    }

    function test_looksLikeAFieldWhereItIsSelected() {
        show({});
        verify(Qt.colorEqual(text().selectionColor, Theme.color.primary));
        verify(Qt.colorEqual(text().selectedTextColor, Theme.color.background));
    }

    function test_isAStopOfTheTabKey() {
        show({});
        verify(button("TRY AGAIN").activeFocus);
        keyClick(Qt.Key_Backtab);
        verify(text().activeFocus);
        keyClick(Qt.Key_Tab);
        verify(button("TRY AGAIN").activeFocus);
    }

    function test_emptyTextIsNoStop() {
        show({message: ""});
        const again = button("TRY AGAIN");
        keyClick(Qt.Key_Backtab);
        verify(again.activeFocus);
        compare(flickable().parent.height, 32 + text().height);
    }

    function test_theCursorIsKeptInSight() {
        show({message: "line\n".repeat(300) + "last"});
        text().forceActiveFocus();
        compare(flickable().contentY, 0);
        keyClick(Qt.Key_End, Qt.ControlModifier);
        fuzzyCompare(flickable().contentY, flickable().contentHeight - flickable().height, 1);
        keyClick(Qt.Key_Home, Qt.ControlModifier);
        fuzzyCompare(flickable().contentY, 0, 1);
    }
}
