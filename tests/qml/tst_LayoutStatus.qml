// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import Quillmark

LayoutTest {
    id: root

    name: "LayoutStatus"
    screen: Component {
        StatusView {
            eyebrow: "SCANNING"
            title: "ROLL 12"
            subtitle: "Locating slate frame…"
        }
    }

    function spinner(): rect {
        return place(Array.from(item.children).find(each => each.step !== undefined));
    }

    function test_texts_data() { return sizes; }
    function test_texts(size) {
        showAt(size, {});
        checkText("SCANNING", styles.label, 3.5, palette.primary);
        checkText("ROLL 12", styles.headline, -0.5, palette.onSurface);
        checkText("Locating slate frame…", styles.mono, 0, palette.onSurfaceVariant);
        checkNothingCollides([]);
    }

    function test_stackIsCentred_data() { return sizes; }
    function test_stackIsCentred(size) {
        showAt(size, {});
        const wheel = Array.from(item.children).find(each => each.step !== undefined);
        const all = [Qt.rect(wheel.x, wheel.y, wheel.width, wheel.height), box("SCANNING"),
                     box("ROLL 12"), box("Locating slate frame…")];
        compare(wheel.width, 32);
        compare(wheel.height, 32);
        for (let i = 0; i < all.length; ++i) {
            near(all[i].x, item.width - rightOf(all[i]), "space on both sides of " + i);
            if (i > 0) {
                checkGap(all[i - 1], all[i], 24, "between items " + i);
            }
        }
        near(all[0].y, item.height - bottomOf(all[3]), "space above and below");
    }

    function test_spinnerIsPrimary() {
        showAt(sizes[0], {});
        const wheel = Array.from(item.children).find(each => each.step !== undefined);
        const found = [];
        for (let y = 0; y < 32; ++y) {
            for (let x = 0; x < 32; ++x) {
                found.push(colorAt(wheel.x + x, wheel.y + y));
            }
        }
        verify(found.includes(palette.primary));
    }

    function test_overlongTexts_data() { return sizes; }
    function test_overlongTexts(size) {
        const name = "W".repeat(200);
        showAt(size, {title: name});
        checkNothingCollides([name]);
    }
}
