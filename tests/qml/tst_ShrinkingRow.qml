// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

TestCase {
    id: root

    component Member: Item {
        property real minimumWidth
        implicitHeight: 10
    }

    name: "ShrinkingRow"
    when: windowShown
    visible: true
    width: 400
    height: 100

    ShrinkingRow {
        id: row
        spacing: 10

        Member {
            id: first
            width: row.widthOf(first)
            minimumWidth: 50
            implicitWidth: 99.5
        }
        Member {
            id: second
            width: row.widthOf(second)
            height: row.height
            minimumWidth: 20
            implicitWidth: 51
        }
        Member {
            id: third
            width: row.widthOf(third)
            implicitHeight: 30
            minimumWidth: 40
            implicitWidth: 40
        }
    }

    function widths(room: real): var {
        row.width = room;
        waitForRendering(root);
        return [first.width, second.width, third.width];
    }

    function test_knowsWhatItNeeds() {
        compare(row.implicitWidth, 100 + 51 + 40 + 20);
        compare(row.minimumWidth, 50 + 20 + 40 + 20);
        compare(row.implicitHeight, 30);
        compare(second.height, 30);
    }

    function test_widths_data() {
        return [
            {tag: "more than enough", room: 400, widths: [100, 51, 40]},
            {tag: "just enough", room: 211, widths: [100, 51, 40]},
            {tag: "two thirds of what lies between", room: 184, widths: [83, 41, 40]},
            {tag: "the least", room: 130, widths: [50, 20, 40]},
            {tag: "less than the least", room: 60, widths: [50, 20, 40]},
        ];
    }
    function test_widths(data) {
        compare(widths(data.room), data.widths);
        compare(second.x, first.width + 10);
        compare(third.x, second.x + second.width + 10);
    }

    function test_endsWhereTheRowDoes() {
        for (let room = 130; room <= 211; ++room) {
            const all = widths(room);
            compare(all[0] + all[1] + all[2] + 20, room);
        }
    }
}
