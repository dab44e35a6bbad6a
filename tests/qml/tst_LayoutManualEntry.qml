// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import Quillmark

LayoutTest {
    id: root

    readonly property string embed: "EMBED METADATA  →"
    readonly property string attach: "ATTACH SLATE PHOTO"
    readonly property string noPhoto: "NO SLATE PHOTO ATTACHED"
    /// The sections, each with the labels of its rows; a field's own name where two share one.
    readonly property var sections: [
        {title: "CAMERA", rows: ["MAKE *", "MODEL *"]},
        {title: "FILM", rows: ["BRAND *", "STOCK *", "ISO *", "PUSH/PULL"]},
        {title: "LENS", rows: ["MAKE", "MODEL", "FOCAL (mm)"]},
        {title: "ROLL", rows: ["PROJECT", "LOCATION", "ROLL NAME", "DATE", "NOTES"]},
        {title: "CREDIT", rows: ["ARTIST", "©"]},
    ]

    name: "LayoutManualEntry"
    screen: Component {
        ManualEntryView {
            // Not the name of a section.
            folderName: "ROLL 12"
            folder: "file:///rolls/roll 12"
            initialSlateImage: ""
        }
    }

    function formPane(): rect {
        return place(clipping(label("CAMERA")));
    }
    function scrollTo(y: real): void {
        const flickable = findChild(item, "flickable");
        flickable.contentY = Math.max(0, Math.min(y, flickable.contentHeight - flickable.height));
        picture = grabImage(item);
    }
    /// The framed box of a field, found by its label.
    function field(name: string): Item {
        let around = label(name).parent;
        while (around && !findChild(around, "input")) {
            around = around.parent;
        }
        return findChild(around, "input").parent;
    }

    function test_texts_data() { return sizes; }
    function test_texts(size) {
        showAt(size, {});
        checkText("02 / MANUAL ENTRY", styles.label, 3.5, palette.secondary);
        checkText("ROLL 12", styles.title, 0, palette.onSurface);
        checkText("SLATE REFERENCE", styles.label, 3.0, palette.primary);
        for (const section of sections) {
            checkText(section.title, styles.label, 3.0, palette.primary);
            for (const name of section.rows) {
                checkText(name, styles.label, 2.5, palette.onSurfaceVariant);
            }
        }
        checkText("0", styles.body, 0, palette.onSurfaceVariant);
        checkText(noPhoto, styles.label, 2.5, palette.onSurfaceVariant);
        checkNothingCollides([]);
    }

    function test_header_data() { return sizes; }
    function test_header(size) {
        showAt(size, {});
        near(box("02 / MANUAL ENTRY").y, 0, "top");
        near(box("02 / MANUAL ENTRY").x, 0, "leading edge");
        near(box("ROLL 12").x, 0, "leading edge");
        checkGap(box("02 / MANUAL ENTRY"), box("ROLL 12"), 6, "caption to folder");
        checkGap(box("ROLL 12"), formPane(), 24, "folder to form");
        near(box("SLATE REFERENCE").y, formPane().y, "top of both panes");
        checkGap(formPane(), buttonBox("CANCEL"), 24, "form to buttons");
    }

    function test_panes_data() { return sizes; }
    function test_panes(size) {
        showAt(size, {});
        const form = formPane();
        near(form.x, 0, "leading edge");
        near(form.width, item.width - 360 - 24, "the form takes what is left");
        compare(colorAt(form.x, form.y), palette.surfaceContainerLow);
        compare(colorAt(rightOf(form) - 1, bottomOf(form) - 1), palette.surfaceContainerLow);
        near(box("SLATE REFERENCE").x, item.width - 360, "the pane's leading edge");
        const top = bottomOf(box("SLATE REFERENCE")) + 12;
        checkFrame(Qt.rect(item.width - 360, top, 360, bottomOf(form) - top),
                   palette.outlineVariant, palette.surfaceContainerLow, "photo box");
    }

    function test_sections_data() { return sizes; }
    function test_sections(size) {
        showAt(size, {});
        let before = Qt.rect(0, formPane().y + 20 - 24, 0, 0);
        for (const section of sections) {
            near(box(section.title).x, 20, section.title);
            checkGap(before, box(section.title), 24, "above " + section.title);
            before = box(section.title);
            for (const name of section.rows.filter(name => name !== "DATE")) {
                const row = place(field(name));
                if (name !== "NOTES") { // it follows the row of the date
                    checkGap(before, row, 10, "above " + name);
                }
                before = row;
            }
        }
        const flickable = findChild(item, "flickable");
        near(flickable.contentHeight, bottomOf(before) - formPane().y + 20, "padding below");
    }

    function test_fields_data() { return sizes; }
    function test_fields(size) {
        showAt(size, {});
        for (const section of sections) {
            for (const name of section.rows.filter(name => name !== "DATE")) {
                scrollTo(field(name).mapToItem(clipping(label(name)).contentItem, 0, 0).y - 20);
                const frame = place(field(name));
                const input = findChild(field(name), "input");
                near(box(name).x, 20, name);
                compare(label(name).width, 100, name);
                near(frame.x, 20 + 100 + 12, name);
                near(rightOf(frame), rightOf(formPane()) - 20, name);
                near(place(input).x - frame.x, 10, name + ", left");
                near(rightOf(frame) - rightOf(place(input)), 10, name + ", right");
                near(place(input).y - frame.y, 8, name + ", top");
                near(bottomOf(frame) - bottomOf(place(input)), 8, name + ", bottom");
                near(box(name).y + label(name).baselineOffset,
                     place(input).y + input.baselineOffset, name + ", baseline");
                // Three fifths of the line's colour over the field's.
                checkFrame(frame, "#2e2c2a", palette.background, name);
                compare(input.color.toString(), palette.onSurface);
                compare(input.font.pointSize, label("0").font.pointSize, name);
            }
        }
    }

    function test_dateRow_data() { return sizes.slice(1); }
    function test_dateRow(size) {
        showAt(size, {});
        const entry = field("DATE");
        const frame = place(entry);
        const toggle = place(all("DATE").find(each => each.toggled));
        near(toggle.x, 20, "switch");
        near(box("DATE").x, rightOf(toggle) + 8, "label");
        compare(label("DATE").width, 90);
        near(frame.x, rightOf(toggle) + 8 + 90 + 8, "picker");
        checkSameMiddle(toggle, frame, "switch and picker");
        checkSameMiddle(box("DATE"), frame, "label and picker");
        checkGap(place(field("ROLL NAME")), frame, 10, "above");
        checkGap(frame, place(field("NOTES")), 10, "below");
        verify(!entry.enabled);
    }

    function test_noPhoto_data() { return sizes; }
    function test_noPhoto(size) {
        showAt(size, {});
        const top = bottomOf(box("SLATE REFERENCE")) + 12;
        const middle = (top + bottomOf(formPane())) / 2;
        near(box(noPhoto).x + box(noPhoto).width / 2, item.width - 180, "centred");
        near(buttonBox(attach).x + buttonBox(attach).width / 2, item.width - 180, "centred");
        checkGap(box(noPhoto), buttonBox(attach), 14, "text to button");
        near((box(noPhoto).y + bottomOf(buttonBox(attach))) / 2, middle, "centred");
        checkText(attach, styles.label, 3.0, palette.onSurface);
        checkPadding(attach, 20, 12);
        checkFrame(buttonBox(attach), palette.outlineVariant, palette.surfaceContainerLow, attach);
        verify(!shows("CHANGE"));
    }

    function test_scrolledFormKeepsInItsPane_data() { return sizes.slice(0, 2); }
    function test_scrolledFormKeepsInItsPane(size) {
        showAt(size, {});
        checkClips(findChild(item, "flickable"));
    }

    function test_photoIsNamed_data() { return sizes; }
    function test_photoIsNamed(size) {
        const name = "m".repeat(100) + " " + "w".repeat(95) + ".tif";
        showAt(size, {initialSlateImage: "file:///rolls/" + name});
        checkText(name, styles.mono, 0, palette.onSurfaceVariant);
        compare(label(name).elide, Text.ElideMiddle);
        compare(label(name).lineCount, 1);
        near(box(name).x, item.width - 360, name);
        checkText("CHANGE", styles.label, 2.5, palette.primary);
        near(rightOf(buttonBox("CHANGE")), item.width, "CHANGE");
        near(bottomOf(buttonBox("CHANGE")), bottomOf(formPane()), "CHANGE");
        checkNothingCollides([name]);
    }

    function test_buttons_data() { return sizes; }
    function test_buttons(size) {
        showAt(size, {});
        checkOutlinedButton("CANCEL", palette.onSurfaceVariant, "#ffffff");
        checkPadding(embed, 28, 14);
        checkText(embed, styles.label, 3.0, palette.onSurfaceVariant);
        checkFill(buttonBox(embed), palette.surfaceContainer, embed);
        near(buttonBox("CANCEL").x, 0, "leading edge");
        near(rightOf(buttonBox(embed)), item.width, "trailing edge");
        near(bottomOf(buttonBox(embed)), item.height, "bottom");
        ["MAKE *", "MODEL *", "BRAND *", "STOCK *", "ISO *"].forEach(name => {
            findChild(field(name), "input").text = "400";
        });
        picture = grabImage(item);
        checkFilledButton(embed, 28, 14);
    }

    function test_overlongTexts_data() { return sizes; }
    function test_overlongTexts(size) {
        const name = "W".repeat(200);
        showAt(size, {folderName: name});
        ["MAKE *", "NOTES", "©"].forEach(each => {
            findChild(field(each), "input").text = name;
        });
        checkNothingCollides([name]);
        near(bottomOf(buttonBox(embed)), item.height, "bottom");
        near(box("SLATE REFERENCE").x, item.width - 360, "the pane keeps its width");
    }
}
