// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

ScreenTest {
    id: root

    name: "DoneView"
    screen: Component {
        DoneView {
            property int reveals: 0
            property int resets: 0

            mutatedCount: 36
            backupCount: 35
            backupMode: "backup-originals"
            onRevealed: ++reveals
            onReset: ++resets
        }
    }

    function test_texts() {
        show({});
        compareStyle("03 / DONE", Theme.color.secondary, 3.5, Theme.font.label);
        compareStyle("METADATA EMBEDDED", Theme.color.onSurface, -1.0, Theme.font.headline);
        compareStyle("MUTATED", Theme.color.onSurfaceVariant, 2.5, Theme.font.label);
        compareStyle("36", Theme.color.onSurface, 0, Theme.font.title);
        compareStyle("REVEAL IN FINDER", Theme.color.onSurface, 3.0, Theme.font.label);
        compareStyle("INGEST ANOTHER  →", Theme.color.background, 3.0, Theme.font.label);
    }

    function test_backupsStandInTheMiddle() {
        show({});
        const first = place(label("MUTATED"));
        const second = place(label("BACKED UP"));
        const third = place(label("MODE"));
        fuzzyCompare(second.x, first.x + first.width + 32, 1);
        fuzzyCompare(third.x, second.x + second.width + 32, 1);
        verify(shows("35"));
        fuzzyCompare(place(label("36")).y, first.y + first.height + 6, 1);
    }

    function test_noBackupsAreNotMentioned() {
        show({backupCount: 0, backupMode: "none"});
        verify(!shows("BACKED UP"));
        verify(!shows("0"));
        verify(shows("IN PLACE"));
        fuzzyCompare(place(label("MODE")).x,
                     place(label("MUTATED")).x + label("MUTATED").width + 32, 1);
    }

    function test_actions() {
        show({});
        click("REVEAL IN FINDER");
        compare(item.reveals, 1);
        compare(item.resets, 0);
        click("INGEST ANOTHER  →");
        compare(item.resets, 1);
    }

    function test_buttonsStandAtTheEnds() {
        show({});
        compare(place(button("REVEAL IN FINDER")).x, 0);
        const another = place(button("INGEST ANOTHER  →"));
        compare(another.x + another.width, item.width);
        compare(another.y + another.height, item.height);
    }
}
