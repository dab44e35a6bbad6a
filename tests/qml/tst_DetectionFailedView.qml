// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "DetectionFailedView"
    screen: Component {
        DetectionFailedView {
            property int cancels: 0
            property int manuals: 0

            folderName: "ROLL-3"
            folder: "file:///rolls/Roll-3"
            triedCount: 7
            onCancelled: ++cancels
            onManualEntryChosen: ++manuals
        }
    }

    function test_texts() {
        show({});
        compareStyle("02 / SLATE NOT FOUND", Theme.color.tertiary, 3.5, Theme.font.label);
        compareStyle("NO READABLE SLATE\nIN ROLL-3", Theme.color.onSurface, -0.5,
                     Theme.font.headline);
        compareStyle("CANCEL", Theme.color.onSurfaceVariant, 3.0, Theme.font.label);
        compareStyle("PICK SLATE FRAME", Theme.color.onSurface, 3.0, Theme.font.label);
        compareStyle("ENTER MANUALLY  →", Theme.color.background, 3.0, Theme.font.label);
        compare(label("NO READABLE SLATE\nIN ROLL-3").lineCount, 2);
    }

    function test_countsImages_data() {
        return [
            {tag: "none", count: 0, begin: "Tried 0 images"},
            {tag: "one", count: 1, begin: "Tried 1 image"},
            {tag: "some", count: 7, begin: "Tried 7 images"},
            {tag: "very many", count: 12345678901, begin: "Tried 12345678901 images"},
        ];
    }
    function test_countsImages(data) {
        show({triedCount: data.count});
        const text = data.begin + " — none contained a decodable Quillmark QR. Pick the slate "
            + "frame yourself, or skip the slate and enter the metadata manually.";
        compareStyle(text, Theme.color.onSurfaceVariant, 0, Theme.font.body);
        verify(!label(text).truncated);
    }

    function test_buttonsStandInARow() {
        show({});
        const manual = place(button("ENTER MANUALLY  →"));
        const pick = place(button("PICK SLATE FRAME"));
        compare(place(button("CANCEL")).x, 0);
        compare(manual.x + manual.width, item.width);
        fuzzyCompare(pick.x + pick.width + 16, manual.x, 1);
    }

    function test_actions() {
        show({});
        click("CANCEL");
        compare(item.cancels, 1);
        click("ENTER MANUALLY  →");
        compare(item.manuals, 1);
    }
}
