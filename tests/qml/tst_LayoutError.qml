// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import Quillmark

LayoutTest {
    id: root

    name: "LayoutError"
    screen: Component {
        ErrorView {
            message: "It broke."
        }
    }

    function panel(message: string): rect {
        return place(clipping(label(message)));
    }

    function test_texts_data() { return sizes; }
    function test_texts(size) {
        showAt(size, {});
        checkText("ERROR", styles.label, 3.5, palette.tertiary);
        checkText("INGESTION FAILED", styles.headline, -1.0, palette.onSurface);
        checkText("It broke.", styles.mono, 0, palette.onSurfaceVariant);
        checkNothingCollides([]);
    }

    function test_stack_data() { return sizes; }
    function test_stack(size) {
        showAt(size, {});
        const step = box("ERROR");
        const headline = box("INGESTION FAILED");
        const around = panel("It broke.");
        near(step.y, 0, "top");
        near(step.x, 0, "leading edge");
        near(headline.x, 0, "leading edge");
        checkGap(step, headline, 20, "caption to headline");
        checkGap(headline, around, 20, "headline to message");
        near(around.x, 0, "panel's leading edge");
        near(around.width, item.width, "panel's width");
        checkFill(around, palette.surfaceContainerLow, "panel");
        near(box("It broke.").x - around.x, 16, "padding");
        near(box("It broke.").y - around.y, 16, "padding");
        near(bottomOf(around) - bottomOf(box("It broke.")), 16, "padding");
    }

    function test_button_data() { return sizes; }
    function test_button(size) {
        showAt(size, {});
        checkFilledButton("TRY AGAIN", 28, 14);
        near(buttonBox("TRY AGAIN").x, 0, "leading edge");
        near(bottomOf(buttonBox("TRY AGAIN")), item.height, "bottom");
    }

    function test_overlongMessages_data() {
        return [].concat(...sizes.map(size => [
            Object.assign({}, size, {tag: size.tag + " one word", message: "w".repeat(200)}),
            Object.assign({}, size, {tag: size.tag + " words", message: "no such file ".repeat(16)}),
            Object.assign({}, size, {tag: size.tag + " lines", message: "a line\n".repeat(200)}),
        ]));
    }
    function test_overlongMessages(data) {
        showAt(data, {message: data.message});
        checkNothingCollides([]);
        const around = panel(data.message);
        verify(bottomOf(around) <= buttonBox("TRY AGAIN").y);
        near(bottomOf(buttonBox("TRY AGAIN")), item.height, "bottom");
    }
}
