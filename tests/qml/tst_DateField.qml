// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "DateField"
    screen: Component {
        Item {
            property alias form: draft

            ManualEntryForm {
                id: draft
            }
            DateField {
                objectName: "field"
                width: parent.width
                form: draft
            }
        }
    }

    function field(): Item {
        return findChild(item, "field");
    }
    function toggle(): Item {
        return all("DATE").find(each => each.toggled);
    }
    function picker(): Item {
        return findChild(item, "input").parent;
    }
    function inside(it: Item): bool {
        const at = place(it);
        return at.x >= 0 && at.y >= 0 && at.x + at.width <= field().width
               && at.y + at.height <= field().height;
    }
    function middle(it: Item): real {
        return place(it).y + place(it).height / 2;
    }

    function test_wide_data() {
        return [{tag: "least", width: 280}, {tag: "more", width: 456}];
    }
    function test_wide(data) {
        show({width: data.width});
        verify(!field().narrow);
        compare(place(toggle()).x, 0);
        compare(place(label("DATE")).x, toggle().width + 8);
        compare(label("DATE").width, 90);
        compare(place(picker()).x, toggle().width + 8 + 90 + 8);
        compare(place(picker()).x + picker().width, data.width);
        compare(field().height, picker().height);
        fuzzyCompare(middle(toggle()), middle(picker()), 0.5);
        fuzzyCompare(middle(label("DATE")), middle(picker()), 0.5);
    }

    function test_narrow_data() {
        return [{tag: "smallest window", width: 216}, {tag: "almost wide", width: 240}];
    }
    function test_narrow(data) {
        show({width: data.width});
        verify(field().narrow);
        compare(place(toggle()).x, 0);
        compare(place(label("DATE")).x, toggle().width + 8);
        fuzzyCompare(middle(label("DATE")), middle(toggle()), 0.5);
        verify(place(picker()).y >= place(toggle()).y + toggle().height);
        compare(place(picker()).x, place(label("DATE")).x);
        compare(place(picker()).x + picker().width, data.width);
        [toggle(), label("DATE"), picker()].forEach(it => verify(inside(it)));
        const text = findChild(item, "input");
        verify(text.contentWidth <= text.width, text.contentWidth + " of " + text.width);
    }

    function test_changesWithItsWidth() {
        show({width: 216});
        const narrow = field().height;
        item.width = 456;
        verify(!field().narrow);
        verify(field().height < narrow);
    }

    function test_calendarNeedsTheSwitch() {
        show({width: 456});
        const open = () => all("Choose a date")[0];
        verify(!picker().enabled);
        mouseClick(open());
        verify(!picker().opened);
        mouseClick(toggle());
        mouseClick(open());
        verify(picker().opened);
        item.form.includeDate = false;
        verify(!picker().opened);
    }

    function test_pickedDayIsTheDrafts() {
        show({width: 456});
        item.form.includeDate = true;
        verify(item.form.setDateText("2024-02-28"));
        findChild(item, "input").forceActiveFocus();
        keyClick(Qt.Key_F4);
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Return);
        compare(item.form.dateText, "2024-02-29");
        compare(item.form.date.toISOString(), "2024-02-29T00:00:00.000Z");
        compare(findChild(item, "input").text, "2024-02-29");
        verify(picker().acceptable);
    }

    function test_opensOnTheLastDayThatWasOne() {
        show({width: 456});
        item.form.includeDate = true;
        item.form.setDateText("2026-05-01");
        findChild(item, "input").forceActiveFocus();
        keyClick(Qt.Key_End);
        keyClick(Qt.Key_Backspace);
        verify(!picker().acceptable);
        keyClick(Qt.Key_F4);
        keyClick(Qt.Key_Return);
        compare(item.form.dateText, "2026-05-01");
        compare(findChild(item, "input").text, "2026-05-01");
        verify(picker().acceptable);
    }
}
