// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import Quillmark

LayoutTest {
    id: root

    readonly property string step: "02 / SLATE NOT FOUND"
    readonly property string headline: "NO READABLE SLATE\nIN ROLL-3"
    readonly property string explanation:
        "Tried 7 images — none contained a decodable Quillmark QR. Pick the slate frame "
        + "yourself, or skip the slate and enter the metadata manually."
    readonly property string pick: "PICK SLATE FRAME"
    readonly property string manual: "ENTER MANUALLY  →"

    name: "LayoutDetectionFailed"
    screen: Component {
        DetectionFailedView {
            folderName: "ROLL-3"
            folder: "file:///rolls/Roll-3"
            triedCount: 7
        }
    }

    function test_texts_data() { return sizes; }
    function test_texts(size) {
        showAt(size, {});
        checkText(step, styles.label, 3.5, palette.tertiary);
        checkText(headline, styles.headline, -0.5, palette.onSurface);
        checkText(explanation, styles.body, 0, palette.onSurfaceVariant);
        compare(label(headline).lineCount, 2);
        checkNothingCollides([]);
    }

    function test_stack_data() { return sizes; }
    function test_stack(size) {
        showAt(size, {});
        near(box(step).y, 0, "top");
        for (const text of [step, headline, explanation]) {
            near(box(text).x, 0, text);
        }
        checkGap(box(step), box(headline), 24, "caption to headline");
        checkGap(box(headline), box(explanation), 24, "headline to explanation");
    }

    function test_buttons_data() { return sizes; }
    function test_buttons(size) {
        showAt(size, {});
        checkOutlinedButton("CANCEL", palette.onSurfaceVariant, "#ffffff");
        checkOutlinedButton(pick, palette.onSurface, "#ffffff");
        checkFilledButton(manual, 28, 14);
        near(buttonBox("CANCEL").x, 0, "leading edge");
        checkSpace(buttonBox(pick), buttonBox(manual), 16, "between the buttons");
        near(rightOf(buttonBox(manual)), item.width, "trailing edge");
        near(bottomOf(buttonBox(manual)), item.height, "bottom");
        for (const text of ["CANCEL", pick]) {
            checkSameMiddle(buttonBox(text), buttonBox(manual), text);
        }
    }

    function test_overlongTexts_data() { return sizes; }
    function test_overlongTexts(size) {
        const name = "W".repeat(200);
        showAt(size, {folderName: name, triedCount: 9007199254740991});
        checkNothingCollides(["NO READABLE SLATE\nIN " + name]);
        near(bottomOf(buttonBox(manual)), item.height, "bottom");
    }
}
