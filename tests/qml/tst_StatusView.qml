// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "StatusView"
    screen: Component {
        StatusView {
            eyebrow: "SCANNING"
            title: "ROLL 12"
            subtitle: "Locating slate frame…"
        }
    }

    function test_texts() {
        show({});
        compareStyle("SCANNING", Theme.color.primary, 3.5, Theme.font.label);
        compareStyle("ROLL 12", Theme.color.onSurface, -0.5, Theme.font.headline);
        compareStyle("Locating slate frame…", Theme.color.onSurfaceVariant, 0, Theme.font.mono);
    }

    function test_isCentred() {
        show({});
        for (const text of ["SCANNING", "Locating slate frame…"]) {
            const box = place(label(text));
            fuzzyCompare(box.x, item.width - box.x - box.width, 1);
        }
        fuzzyCompare(place(label("ROLL 12")).y,
                     place(label("SCANNING")).y + label("SCANNING").height + 24, 1);
    }

    function test_spinnerTurns() {
        show({});
        const spinner = Array.from(item.children).find(each => each.step !== undefined);
        const start = spinner.rotation;
        tryVerify(() => spinner.rotation !== start);
    }

    function test_longNamesAreCutShort() {
        show({title: "W".repeat(200)});
        const title = label("W".repeat(200));
        verify(title.truncated);
        verify(title.lineCount <= 2);
        verify(title.contentWidth <= item.width);
    }
}
