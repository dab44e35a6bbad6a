// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "PlanView"
    screen: Component {
        PlanView {
            property int cancels: 0
            property int confirms: 0

            folderName: "ROLL 12"
            slateName: "Slate 01.tif"
            rows: few
            imageCount: 36
            backupMode: "backup-originals"
            onCancelled: ++cancels
            onConfirmed: ++confirms
        }
    }

    ListModel {
        id: few
        ListElement { label: "CAMERA"; value: "Kestrel K2" }
        ListElement { label: "ISO"; value: "400" }
        ListElement { label: "ISO"; value: "" }
        ListElement { label: "©"; value: "<b>2026</b>" }
    }
    ListModel {
        id: many
        Component.onCompleted: {
            for (let i = 0; i < 40; ++i) {
                many.append({label: "ROW", value: "value " + i});
            }
        }
    }

    function test_texts() {
        show({});
        compareStyle("02 / SLATE DETECTED", Theme.color.secondary, 3.5, Theme.font.label);
        compareStyle("ROLL 12", Theme.color.onSurface, -0.5, Theme.font.headline);
        compareStyle("Slate 01.tif", Theme.color.onSurfaceVariant, 0, Theme.font.mono);
        compareStyle("PAYLOAD", Theme.color.primary, 3.0, Theme.font.label);
        compareStyle("CAMERA", Theme.color.onSurfaceVariant, 2.5, Theme.font.label);
        compareStyle("Kestrel K2", Theme.color.onSurface, 0, Theme.font.body);
        compareStyle("ROLL", Theme.color.primary, 3.0, Theme.font.label);
        compareStyle("IMAGES", Theme.color.onSurfaceVariant, 2.5, Theme.font.label);
        compareStyle("BACKUP MODE", Theme.color.onSurfaceVariant, 2.5, Theme.font.label);
        compareStyle("BACKUP ORIGINALS", Theme.color.onSurface, 0, Theme.font.title);
        compareStyle("CANCEL", Theme.color.onSurfaceVariant, 3.0, Theme.font.label);
        compareStyle("EMBED METADATA  →", Theme.color.background, 3.0, Theme.font.label);
    }

    function test_figureIsLarge() {
        show({});
        compare(label("36").font.pixelSize, 56);
        compare(label("36").font.weight, Font.Bold);
    }

    function test_imagesStaysPlural() {
        show({imageCount: 1});
        verify(shows("1"));
        verify(shows("IMAGES"));
    }

    function test_valuesAreNotInterpreted() {
        show({});
        verify(shows("<b>2026</b>"));
        compare(label("<b>2026</b>").textFormat, Text.PlainText);
    }

    function test_labelsMayRepeat() {
        show({});
        compare(all("ISO").length, 2);
    }

    function test_describesTheMode_data() {
        return [
            {tag: "backup-originals", title: "BACKUP ORIGINALS",
             text: "Originals are copied to _originals/ before metadata is written. Recommended."},
            {tag: "write-copies", title: "WRITE COPIES",
             text: "Tagged copies are written to _tagged/. Originals are never touched."},
            {tag: "none", title: "IN PLACE",
             text: "Files are mutated in place. Fastest, no extra disk — but originals are gone."},
        ];
    }
    function test_describesTheMode(data) {
        show({backupMode: data.tag});
        verify(shows(data.title));
        compareStyle(data.text, Theme.color.onSurfaceVariant, 0, Theme.font.caption);
        verify(!label(data.text).truncated);
    }

    function test_layout() {
        show({});
        const title = place(label("PAYLOAD"));
        const name = place(label("CAMERA"));
        const value = place(label("Kestrel K2"));
        compare(title.x, 20);
        compare(name.x, 20);
        compare(value.x, 20 + 96);
        // A row ends 10 below its value, with a line, and the next value stands 10 lower.
        compare(place(label("400")).y, value.y + value.height + 21);
        const summary = place(label("ROLL"));
        compare(summary.x, item.width - 240 + 20);
        compare(summary.y, title.y);
        const cancel = place(button("CANCEL"));
        const embed = place(button("EMBED METADATA  →"));
        compare(cancel.x, 0);
        compare(embed.x + embed.width, item.width);
        compare(embed.y + embed.height, item.height);
        fuzzyCompare(embed.width, label("EMBED METADATA  →").implicitWidth + 56, 1);
        fuzzyCompare(cancel.width, label("CANCEL").implicitWidth + 48, 1);
        fuzzyCompare(cancel.height, label("CANCEL").implicitHeight + 28, 1);
    }

    function test_longPayloadScrolls() {
        show({rows: many});
        const flickable = findChild(item, "flickable");
        verify(flickable.contentHeight > flickable.height);
        const last = label("value 39");
        verify(place(last).y > item.height);
        mouseWheel(flickable, 50, 50, 0, -120 * 200);
        tryVerify(() => flickable.atYEnd);
        verify(place(last).y + last.height < place(button("CANCEL")).y);
    }

    function test_shortPayloadDoesNot() {
        show({height: 600});
        const flickable = findChild(item, "flickable");
        verify(flickable.contentHeight <= flickable.height);
        verify(!flickable.interactive);
    }

    function test_actions() {
        show({});
        click("CANCEL");
        compare(item.cancels, 1);
        compare(item.confirms, 0);
        click("EMBED METADATA  →");
        compare(item.confirms, 1);
    }
}
