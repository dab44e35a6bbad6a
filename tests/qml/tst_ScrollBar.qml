// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// The thumb beside a panel's content.
ScreenTest {
    id: root

    name: "ScrollBar"
    screen: Component {
        ScrollPanel {
            property alias contentLength: filler.implicitHeight

            Item {
                id: filler
            }
        }
    }

    function bar(): Item {
        return Array.from(item.children).find(each => each.flickable !== undefined);
    }
    function thumb(): Item {
        return findChild(bar(), "thumb");
    }
    function flickable(): Item {
        return findChild(item, "flickable");
    }
    function range(): real {
        return flickable().contentHeight - flickable().height;
    }

    function test_thumbStaysInTheBar_data() {
        return [{tag: "long", height: 100, content: 300},
                {tag: "very long", height: 100, content: 100000},
                {tag: "low panel", height: 30, content: 1000},
                {tag: "lower than the thumb", height: 20, content: 1000}];
    }
    function test_thumbStaysInTheBar(data) {
        show({width: 200, height: data.height, contentLength: data.content});
        verify(bar().visible);
        compare(thumb().y, 0);
        for (const part of [0.25, 0.5, 0.9, 1]) {
            flickable().contentY = range() * part;
            fuzzyCompare(thumb().y, (bar().height - thumb().height) * part, 0.01);
            verify(thumb().y >= 0);
            verify(thumb().y + thumb().height <= bar().height + 0.01, "at " + part);
        }
    }

    function test_contentGoesWithTheThumb_data() {
        return [{tag: "long", content: 300}, {tag: "very long", content: 100000}];
    }
    function test_contentGoesWithTheThumb(data) {
        show({width: 200, height: 200, contentLength: data.content});
        mousePress(bar(), 5, 10);
        mouseMove(bar(), 5, 40);
        mouseMove(bar(), 5, 60);
        fuzzyCompare(thumb().y, 60 - 10, 0.5, "under the pointer");
        mouseMove(bar(), 5, 400);
        fuzzyCompare(flickable().contentY, range(), 0.01);
        mouseRelease(bar(), 5, 400);
    }

    function test_hiddenWhereNothingScrolls() {
        show({width: 200, height: 200, contentLength: 100});
        verify(!bar().visible);
        compare(thumb().y, 0);
    }
}
