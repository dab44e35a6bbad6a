// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "DropZone"
    screen: Component {
        DropZone {}
    }

    function test_texts() {
        show({});
        compareStyle("01 / INGEST A ROLL", Theme.color.primary, 3.5, Theme.font.label);
        compareStyle("DROP A FOLDER\nOF SCANS", Theme.color.onSurface, -1.0, Theme.font.headline);
        compareStyle("Quillmark finds the slate frame, decodes the QR, and embeds the\n"
                     + "metadata directly into every image — EXIF, IPTC, and XMP.",
                     Theme.color.onSurfaceVariant, 0, Theme.font.body);
        compareStyle("CHOOSE FOLDER", Theme.color.background, 3.0, Theme.font.label);
    }

    function test_isCentred() {
        show({});
        const top = place(label("01 / INGEST A ROLL"));
        const bottom = place(button("CHOOSE FOLDER"));
        fuzzyCompare(top.y, item.height - bottom.y - bottom.height, 1);
        fuzzyCompare(bottom.x, item.width - bottom.x - bottom.width, 1);
        compare(label("DROP A FOLDER\nOF SCANS").lineCount, 2);
    }

    function test_buttonIsPadded() {
        show({});
        const text = label("CHOOSE FOLDER");
        const frame = button("CHOOSE FOLDER");
        fuzzyCompare(frame.width, text.implicitWidth + 64, 1);
        fuzzyCompare(frame.height, text.implicitHeight + 32, 1);
    }
}
