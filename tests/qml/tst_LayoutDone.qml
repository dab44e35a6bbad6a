// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import Quillmark

LayoutTest {
    id: root

    readonly property string another: "INGEST ANOTHER  →"

    name: "LayoutDone"
    screen: Component {
        DoneView {
            mutatedCount: 36
            backupCount: 35
            backupMode: "backup-originals"
        }
    }

    function test_texts_data() { return sizes; }
    function test_texts(size) {
        showAt(size, {});
        checkText("03 / DONE", styles.label, 3.5, palette.secondary);
        checkText("METADATA EMBEDDED", styles.headline, -1.0, palette.onSurface);
        for (const [name, value] of [["MUTATED", "36"], ["BACKED UP", "35"],
                                     ["MODE", "BACKUP ORIGINALS"]]) {
            checkText(name, styles.label, 2.5, palette.onSurfaceVariant);
            checkText(value, styles.title, 0, palette.onSurface);
        }
        checkNothingCollides([]);
    }

    function test_stack_data() { return sizes; }
    function test_stack(size) {
        showAt(size, {});
        const step = box("03 / DONE");
        const headline = box("METADATA EMBEDDED");
        near(step.y, 0, "top");
        near(step.x, 0, "leading edge");
        near(headline.x, 0, "leading edge");
        checkGap(step, headline, 24, "caption to headline");
        checkGap(headline, box("MUTATED"), 24 + 16, "headline to statistics");
    }

    function test_statistics_data() { return sizes; }
    function test_statistics(size) {
        showAt(size, {});
        const statistics = [["MUTATED", "36"], ["BACKED UP", "35"], ["MODE", "BACKUP ORIGINALS"]];
        let end = -32;
        for (const [name, value] of statistics) {
            near(box(name).x, end + 32, name);
            near(box(value).x, end + 32, value);
            checkGap(box(name), box(value), 6, name);
            near(box(name).y, box("MUTATED").y, name);
            end = Math.max(rightOf(box(name)), rightOf(box(value)));
        }
    }

    function test_buttons_data() { return sizes; }
    function test_buttons(size) {
        showAt(size, {});
        checkOutlinedButton("REVEAL IN FINDER", palette.onSurface, "#ffffff");
        checkFilledButton(another, 28, 14);
        near(buttonBox("REVEAL IN FINDER").x, 0, "leading edge");
        near(rightOf(buttonBox(another)), item.width, "trailing edge");
        near(bottomOf(buttonBox(another)), item.height, "bottom");
        checkSameMiddle(buttonBox("REVEAL IN FINDER"), buttonBox(another), "middle");
    }

    function test_largeNumbers_data() { return sizes; }
    function test_largeNumbers(size) {
        showAt(size, {mutatedCount: 2147483647, backupCount: 2147483647});
        checkNothingCollides([]);
    }
}
