// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import Quillmark

LayoutTest {
    id: root

    readonly property string step: "01 / INGEST A ROLL"
    readonly property string headline: "DROP A FOLDER\nOF SCANS"
    readonly property string explanation:
        "Quillmark finds the slate frame, decodes the QR, and embeds the\n"
        + "metadata directly into every image — EXIF, IPTC, and XMP."
    readonly property string choose: "CHOOSE FOLDER"
    readonly property var modes: ["BACKUP ORIGINALS", "WRITE COPIES", "IN PLACE"]
    readonly property string recurse: "RECURSE INTO SUBFOLDERS"

    name: "LayoutIdle"
    screen: Component {
        IdleScreen {
            session: Session {}
        }
    }

    function settings(): rect {
        return place(Array.from(item.children).find(each => each.backupMode !== undefined));
    }

    function test_texts_data() { return sizes; }
    function test_texts(size) {
        showAt(size, {});
        checkText(step, styles.label, 3.5, palette.primary);
        checkText(headline, styles.headline, -1.0, palette.onSurface);
        checkText(explanation, styles.body, 0, palette.onSurfaceVariant);
        checkText("BACKUP MODE", styles.label, 2.5, palette.onSurfaceVariant);
        checkText(modes[0], styles.label, 2.5, palette.background);
        checkText(modes[1], styles.label, 2.5, palette.onSurface);
        checkText(modes[2], styles.label, 2.5, palette.onSurface);
        checkText(recurse, styles.label, 2.5, palette.onSurfaceVariant);
        checkNothingCollides([]);
    }

    function test_stackIsCentred_data() { return sizes; }
    function test_stackIsCentred(size) {
        showAt(size, {});
        const all = [box(step), box(headline), box(explanation), buttonBox(choose)];
        for (const each of all) {
            near(each.x, item.width - rightOf(each), "space on both sides");
        }
        for (let i = 1; i < all.length; ++i) {
            checkGap(all[i - 1], all[i], 24, "between items " + i);
        }
        near(all[0].y, item.height - bottomOf(all[3]), "space above and below");
        for (const text of [headline, explanation]) {
            compare(label(text).lineCount, 2, text);
            compare(label(text).horizontalAlignment, Text.AlignHCenter, text);
        }
    }

    function test_headlineLinesStandApart_data() { return sizes; }
    function test_headlineLinesStandApart(size) {
        showAt(size, {});
        metrics.font = label(headline).font;
        near(label(headline).contentHeight, 2 * (metrics.lineSpacing + 2), headline);
    }
    FontMetrics {
        id: metrics
    }

    function test_zoneIsAFramedPanel_data() { return sizes; }
    function test_zoneIsAFramedPanel(size) {
        showAt(size, {});
        const left = {x: 0, y: 0, last: settings().y - 1};
        for (let y = 0; y < left.last; y += 7) {
            compare(colorAt(0, y), palette.outlineVariant, "left border at " + y);
            compare(colorAt(1, y), y < 1 ? palette.outlineVariant : palette.surfaceContainerLow);
            compare(colorAt(item.width - 1, y), palette.outlineVariant, "right border at " + y);
        }
        compare(colorAt(item.width / 2, 0), palette.outlineVariant);
        compare(colorAt(item.width / 2, 1), palette.surfaceContainerLow);
    }

    function test_button_data() { return sizes; }
    function test_button(size) {
        showAt(size, {});
        checkFilledButton(choose, 32, 16);
    }

    function test_settingsLieOverTheBottom_data() { return sizes; }
    function test_settingsLieOverTheBottom(size) {
        showAt(size, {});
        const bar = settings();
        compare(bar.x, 0);
        compare(bar.width, item.width);
        near(bottomOf(bar), item.height, "bottom");
        compare(colorAt(item.width / 2, bar.y), palette.outlineVariant, "the line on top");
        compare(colorAt(item.width / 2, bar.y - 1), palette.surfaceContainerLow);
        const strip = modes.map(buttonBox);
        for (const button of strip) {
            checkGap(Qt.rect(0, bar.y, bar.width, 1), button, 16, "below the line");
        }
        verify(bar.y >= bottomOf(buttonBox(choose)) + 24, "24 points of space above");
    }

    function test_settingsStandInARow_data() { return sizes; }
    function test_settingsStandInARow(size) {
        showAt(size, {});
        const strip = modes.map(buttonBox);
        const caption = box("BACKUP MODE");
        const toggle = place(all(recurse).find(each => each.toggled));
        near(caption.x, 0, "leading edge");
        checkSpace(caption, strip[0], 32, "caption to strip");
        checkSpace(strip[0], strip[1], 0, "strip");
        checkSpace(strip[1], strip[2], 0, "strip");
        checkSpace(strip[2], toggle, 32, "strip to switch");
        for (const each of [strip[0], strip[1], strip[2], toggle]) {
            checkSameMiddle(caption, each, "middle");
        }
        verify(rightOf(toggle) <= item.width + 0.5);
    }

    function test_stripIsPadded_data() { return sizes; }
    function test_stripIsPadded(size) {
        showAt(size, {});
        modes.forEach((mode, index) => {
            const frame = buttonBox(mode);
            const text = box(mode);
            near(text.x - frame.x, 14, mode);
            near(rightOf(frame) - rightOf(text), 14, mode);
            verify(text.y - frame.y >= 9.5, mode);
            checkFill(frame, index === 0 ? palette.primary : palette.surfaceContainer, mode);
        });
    }

    function test_roomyStripNeedsNoWrapping() {
        showAt(sizes[2], {});
        for (const mode of modes) {
            compare(label(mode).lineCount, 1, mode);
            checkPadding(mode, 14, 10);
        }
        compare(label("BACKUP MODE").lineCount, 1);
        compare(label(recurse).lineCount, 1);
    }

    function test_switchLooksLikeOne_data() { return sizes; }
    function test_switchLooksLikeOne(size) {
        showAt(size, {});
        const toggle = all(recurse).find(each => each.toggled);
        const frame = place(toggle);
        compare(colorAt(frame.x + 22, frame.y + frame.height / 2), palette.outlineVariant);
        mouseClick(toggle);
        picture = grabImage(item);
        compare(colorAt(frame.x + 8, frame.y + frame.height / 2), palette.primary);
    }
}
