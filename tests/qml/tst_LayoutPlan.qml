// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import Quillmark

LayoutTest {
    id: root

    readonly property string embed: "EMBED METADATA  →"
    readonly property string description:
        "Originals are copied to _originals/ before metadata is written. Recommended."

    name: "LayoutPlan"
    screen: Component {
        PlanView {
            folderName: "ROLL 12"
            slateName: "Slate 01.tif"
            rows: few
            imageCount: 36
            backupMode: "backup-originals"
        }
    }

    ListModel {
        id: few
        ListElement { label: "CAMERA"; value: "Kestrel K2" }
        ListElement { label: "FILM"; value: "Vela Nova" }
        ListElement { label: "ISO"; value: "400" }
    }
    ListModel {
        id: overlong
        Component.onCompleted: {
            for (const value of ["w".repeat(200), "many words ".repeat(20), "", "400"]) {
                overlong.append({label: "LABEL", value: value});
            }
        }
    }

    ListModel {
        id: many
        Component.onCompleted: {
            for (let i = 0; i < 40; ++i) {
                many.append({label: "LABEL", value: "Value " + i});
            }
        }
    }

    /// The panels, by the titles in them.
    function panel(title: string): rect {
        return place(clipping(label(title)));
    }

    function test_texts_data() { return sizes; }
    function test_texts(size) {
        showAt(size, {});
        checkText("02 / SLATE DETECTED", styles.label, 3.5, palette.secondary);
        checkText("ROLL 12", styles.headline, -0.5, palette.onSurface);
        checkText("Slate 01.tif", styles.mono, 0, palette.onSurfaceVariant);
        checkText("PAYLOAD", styles.label, 3.0, palette.primary);
        checkText("CAMERA", styles.label, 2.5, palette.onSurfaceVariant);
        checkText("Kestrel K2", styles.body, 0, palette.onSurface);
        checkText("ROLL", styles.label, 3.0, palette.primary);
        compare(label("36").font.pixelSize, 56);
        compare(label("36").font.weight, Font.Bold);
        compare(label("36").color.toString(), palette.onSurface);
        checkText("IMAGES", styles.label, 2.5, palette.onSurfaceVariant);
        checkText("BACKUP MODE", styles.label, 2.5, palette.onSurfaceVariant);
        checkText("BACKUP ORIGINALS", styles.title, 0, palette.onSurface);
        checkText(description, styles.caption, 0, palette.onSurfaceVariant);
        checkNothingCollides([]);
    }

    function test_header_data() { return sizes; }
    function test_header(size) {
        showAt(size, {});
        const step = box("02 / SLATE DETECTED");
        const folder = box("ROLL 12");
        const slate = box("Slate 01.tif");
        near(step.y, 0, "top");
        for (const each of [step, folder, slate]) {
            near(each.x, 0, "leading edge");
        }
        checkGap(step, folder, 8, "caption to folder");
        checkGap(folder, slate, 8, "folder to slate");
    }

    function test_panels_data() { return sizes; }
    function test_panels(size) {
        showAt(size, {});
        const payload = panel("PAYLOAD");
        const summary = panel("ROLL");
        near(payload.x, 0, "leading edge");
        near(summary.width, 240, "width");
        near(rightOf(summary), item.width, "trailing edge");
        checkSpace(payload, summary, 32, "between the panels");
        near(payload.y, summary.y, "top");
        checkFill(payload, palette.surfaceContainerLow, "payload");
        checkFill(summary, palette.surfaceContainerLow, "summary");
        compare(colorAt(payload.x + 1, payload.y - 2), "#ffffff"); // nothing behind it
        for (const [title, around] of [["PAYLOAD", payload], ["ROLL", summary]]) {
            near(box(title).x - around.x, 20, title);
            near(box(title).y - around.y, 20, title);
        }
        near(rightOf(payload) - rightOf(box("Kestrel K2")), 20, "trailing padding");
    }

    function test_rows_data() { return sizes; }
    function test_rows(size) {
        showAt(size, {});
        const rows = [["CAMERA", "Kestrel K2"], ["FILM", "Vela Nova"], ["ISO", "400"]];
        checkGap(box("PAYLOAD"), box("Kestrel K2"), 16 + 10, "title to first value");
        for (const [name, value] of rows) {
            near(box(name).x, 20, name);
            compare(label(name).width, 96, name);
            near(box(value).x, 20 + 96, value);
            checkSameBaseline(name, value);
            const line = bottomOf(box(value)) + 10;
            // Two fifths of the line's colour over the panel's.
            compare(colorAt(30, line), "#282624", "line below " + value);
            compare(colorAt(30, line - 1), palette.surfaceContainerLow, "above the line");
            compare(colorAt(30, line + 1), palette.surfaceContainerLow, "below the line");
        }
        checkGap(box("Kestrel K2"), box("Vela Nova"), 21, "row to row");
    }

    function test_summary_data() { return sizes; }
    function test_summary(size) {
        showAt(size, {});
        const around = panel("ROLL");
        checkGap(box("ROLL"), box("36"), 12, "title to figure");
        checkSameBaseline("36", "IMAGES");
        verify(rightOf(box("36")) < box("IMAGES").x);
        const line = bottomOf(box("36")) + 12 + 8;
        compare(colorAt(around.x + 20, line), palette.outlineVariant, "line");
        compare(colorAt(around.x + 219, line), palette.outlineVariant, "line's end");
        compare(colorAt(around.x + 19, line), palette.surfaceContainerLow, "before the line");
        near(box("BACKUP MODE").y - line - 1, 8 + 12, "line to caption");
        checkGap(box("BACKUP MODE"), box("BACKUP ORIGINALS"), 12, "caption to mode");
        checkGap(box("BACKUP ORIGINALS"), box(description), 12, "mode to description");
        near(bottomOf(around) - bottomOf(box(description)), 20, "bottom padding");
        for (const text of ["36", "BACKUP MODE", "BACKUP ORIGINALS", description]) {
            near(box(text).x - around.x, 20, text);
        }
    }

    function test_buttons_data() { return sizes; }
    function test_buttons(size) {
        showAt(size, {});
        checkOutlinedButton("CANCEL", palette.onSurfaceVariant, "#ffffff");
        checkFilledButton(embed, 28, 14);
        near(buttonBox("CANCEL").x, 0, "leading edge");
        near(rightOf(buttonBox(embed)), item.width, "trailing edge");
        near(bottomOf(buttonBox(embed)), item.height, "bottom");
        checkSameMiddle(buttonBox("CANCEL"), buttonBox(embed), "middle");
    }

    function test_scrolledPayloadKeepsInItsPanel_data() { return sizes.slice(0, 2); }
    function test_scrolledPayloadKeepsInItsPanel(size) {
        showAt(size, {rows: many});
        checkClips(findChild(item, "flickable"));
    }

    function test_overlongTexts_data() { return sizes; }
    function test_overlongTexts(size) {
        const name = "W".repeat(200);
        const slate = "m".repeat(196) + ".tif";
        showAt(size, {folderName: name, slateName: slate, rows: overlong, imageCount: 2147483647});
        checkNothingCollides([name, slate]);
        for (const title of ["PAYLOAD", "ROLL"]) {
            const around = panel(title);
            verify(around.height > 60, title);
            verify(bottomOf(around) <= buttonBox("CANCEL").y, title);
        }
        near(bottomOf(buttonBox(embed)), item.height, "bottom");
    }
}
