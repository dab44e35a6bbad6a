// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "ManualEntryView"
    screen: Component {
        ManualEntryView {
            property int cancels: 0
            property ManualEntryForm last: null

            folderName: "ROLL 12"
            folder: "file:///rolls/roll 12"
            initialSlateImage: ""
            onCancelled: ++cancels
            onSubmitted: form => last = form
        }
    }

    function inputs(): var {
        const found = [];
        const collect = each => {
            if (each.objectName === "input") {
                found.push(each);
            }
            Array.from(each.children).forEach(collect);
        };
        collect(item);
        return found;
    }
    function type(index: int, text: string): void {
        const input = inputs()[index];
        input.forceActiveFocus();
        for (const letter of text) {
            keyClick(letter);
        }
    }
    function fillIn(): void {
        ["K", "m", "b", "s", "400"].forEach((text, index) => type(index, text));
    }

    function test_texts() {
        show({});
        compareStyle("02 / MANUAL ENTRY", Theme.color.secondary, 3.5, Theme.font.label);
        compareStyle("ROLL 12", Theme.color.onSurface, 0, Theme.font.title);
        for (const title of ["CAMERA", "FILM", "LENS", "ROLL", "CREDIT", "SLATE REFERENCE"]) {
            compareStyle(title, Theme.color.primary, 3.0, Theme.font.label);
        }
        for (const name of ["MAKE *", "MODEL *", "BRAND *", "STOCK *", "ISO *", "PUSH/PULL",
                            "MAKE", "MODEL", "FOCAL (mm)", "PROJECT", "LOCATION", "ROLL NAME",
                            "DATE", "NOTES", "ARTIST", "©"]) {
            compareStyle(name, Theme.color.onSurfaceVariant, 2.5, Theme.font.label);
        }
        compareStyle("NO SLATE PHOTO ATTACHED", Theme.color.onSurfaceVariant, 2.5,
                     Theme.font.label);
        verify(shows("ATTACH SLATE PHOTO"));
        verify(!shows("CHANGE"));
    }

    function test_everyFieldHasItsPlace_data() {
        return ["cameraMake", "cameraModel", "filmBrand", "filmStock", "iso", "pushPull",
                "lensMake", "lensModel", "focalLength", "project", "location", "rollName", "date",
                "notes", "artist", "copyright"].map((name, index) => ({tag: name, index: index}));
    }
    function test_everyFieldHasItsPlace(data) {
        if (data.tag === "date") {
            return;
        }
        show({});
        fillIn();
        const before = inputs()[data.index].text;
        type(data.index, "7");
        click("EMBED METADATA  →");
        compare(item.last[data.tag], before + "7");
    }

    function test_opensEmptyAndDisabled() {
        show({});
        compareStyle("EMBED METADATA  →", Theme.color.onSurfaceVariant, 3.0, Theme.font.label);
        verify(!button("EMBED METADATA  →").enabled);
        click("EMBED METADATA  →");
        compare(item.last, null);
    }

    function test_requiredFieldsEnableIt() {
        show({});
        fillIn();
        verify(button("EMBED METADATA  →").enabled);
        compareStyle("EMBED METADATA  →", Theme.color.background, 3.0, Theme.font.label);
        type(4, "x");
        verify(!button("EMBED METADATA  →").enabled, "an ISO with letters");
    }

    function test_pushPullShowsAZeroWhileEmpty() {
        show({});
        compareStyle("0", Theme.color.onSurfaceVariant, 0, Theme.font.body);
        type(5, "+1");
        verify(!shows("0"));
    }

    function test_dateNeedsItsSwitch() {
        show({});
        const date = inputs()[12];
        verify(!date.enabled);
        Array.from(date.parent.parent.children).find(each => each.toggled).forceActiveFocus();
        keyClick(Qt.Key_Space);
        verify(date.enabled);
        date.selectAll();
        date.forceActiveFocus();
        for (const letter of "2024-02-29") {
            keyClick(letter);
        }
        fillIn();
        click("EMBED METADATA  →");
        compare(item.last.dateText, "2024-02-29");
        compare(item.last.includeDate, true);
    }

    function test_whatIsNoDayIsNotKept() {
        show({});
        const date = inputs()[12];
        Array.from(date.parent.parent.children).find(each => each.toggled).forceActiveFocus();
        keyClick(Qt.Key_Space);
        const before = date.text;
        date.forceActiveFocus();
        keyClick(Qt.Key_Backspace);
        verify(date.text !== before);
        verify(Qt.colorEqual(date.parent.border.color, Theme.color.tertiary));
        inputs()[0].forceActiveFocus();
        compare(date.text, before);
        verify(!Qt.colorEqual(date.parent.border.color, Theme.color.tertiary));
    }

    function test_whatIsNoDayIsNotSubmitted_data() {
        return [{tag: "short", text: "2026-5-1"}, {tag: "no such day", text: "2026-13-45"},
                {tag: "nothing", text: ""}];
    }
    function test_whatIsNoDayIsNotSubmitted(data) {
        show({});
        fillIn();
        const date = inputs()[12];
        const toggle = all("DATE").find(each => each.toggled);
        toggle.press();
        date.forceActiveFocus();
        date.text = data.text;
        compare(date.Accessible.description, "Type a day as yyyy-MM-dd");
        inputs()[0].forceActiveFocus(); // restores what was there
        compare(date.Accessible.description, "");
        date.text = data.text;
        verify(button("EMBED METADATA  →").enabled);
        click("EMBED METADATA  →");
        compare(item.last, null);
        verify(date.activeFocus);
        compare(date.selectedText, data.text);
        verify(place(date).y > place(label("02 / MANUAL ENTRY")).y);
        verify(place(date).y + date.height < place(button("CANCEL")).y);
        date.text = "2026-05-01";
        compare(date.Accessible.description, "");
        click("EMBED METADATA  →");
        compare(item.last.dateText, "2026-05-01");
    }

    function test_whatIsNoDayDoesNotMatterWithoutADate() {
        show({});
        fillIn();
        all("DATE").find(each => each.toggled).press();
        inputs()[12].text = "2026-5-1";
        all("DATE").find(each => each.toggled).press();
        compare(inputs()[12].Accessible.description, "");
        click("EMBED METADATA  →");
        compare(item.last.includeDate, false);
    }

    function test_layout() {
        show({});
        const make = place(label("MAKE *"));
        const input = place(inputs()[0]);
        compare(make.x, 20);
        compare(input.x, 20 + 100 + 12 + 10);
        compare(place(label("SLATE REFERENCE")).x, item.width - 360);
        fuzzyCompare(place(label("MODEL *")).y - make.y, inputs()[0].height + 16 + 10, 1);
    }

    function test_theFieldTypedInIsSeen() {
        show({});
        const last = inputs()[15];
        verify(place(last).y > item.height);
        last.forceActiveFocus();
        verify(place(last).y + last.height < place(button("CANCEL")).y);
        inputs()[0].forceActiveFocus();
        verify(place(inputs()[0]).y > place(label("02 / MANUAL ENTRY")).y);
    }

    function test_theDateIsSeenBesideItsCalendar() {
        show({width: 720 - 80, height: 560 - 80});
        all("DATE").find(each => each.toggled).press();
        const date = inputs()[12];
        date.forceActiveFocus();
        findChild(item, "flickable").contentY = 0;
        verify(place(date).y > item.height, "scrolled away");
        keyClick(Qt.Key_F4);
        verify(place(date).y + date.height < place(button("CANCEL")).y);
        const panel = findChild(root.Window.contentItem, "panel");
        const at = panel.mapToItem(root.Window.contentItem, 0, 0);
        verify(at.y >= 8 && at.y + panel.height <= root.Window.contentItem.height - 8);
        const field = date.parent.mapToItem(root.Window.contentItem, 0, 0);
        verify(at.y + panel.height <= field.y || at.y >= field.y + date.parent.height
               || at.x >= field.x + date.parent.width);
        keyClick(Qt.Key_Escape);
    }

    function test_tabGoesThroughTheFields() {
        show({});
        inputs()[0].forceActiveFocus();
        keyClick(Qt.Key_Tab);
        verify(inputs()[1].activeFocus);
        keyClick(Qt.Key_Backtab);
        verify(inputs()[0].activeFocus);
    }

    function test_pickedFrameIsNamed() {
        show({initialSlateImage: "file:///rolls/roll%2012/Slate.tif"});
        compareStyle("Slate.tif", Theme.color.onSurfaceVariant, 0, Theme.font.mono);
        compareStyle("CHANGE", Theme.color.primary, 2.5, Theme.font.label);
        tryVerify(() => shows("NO SLATE PHOTO ATTACHED"), 5000, "there is no such file");
    }

    function test_cancel() {
        show({});
        click("CANCEL");
        compare(item.cancels, 1);
    }
}
