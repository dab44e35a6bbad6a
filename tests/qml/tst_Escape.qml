// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// Escape is CANCEL on the screens that have it, from wherever the keyboard is on them.
TestCase {
    id: root

    name: "Escape"
    width: 720
    height: 560
    visible: true
    when: windowShown

    property int cancels: 0

    Component {
        id: plan
        PlanView {
            folderName: "ROLL 12"
            slateName: "1.jpg"
            rows: []
            imageCount: 1
            backupMode: "none"
            onCancelled: ++root.cancels
        }
    }
    Component {
        id: failed
        DetectionFailedView {
            folderName: "ROLL 12"
            folder: "file:///rolls/roll 12"
            triedCount: 2
            onCancelled: ++root.cancels
        }
    }
    Component {
        id: form
        ManualEntryView {
            folderName: "ROLL 12"
            folder: "file:///rolls/roll 12"
            initialSlateImage: ""
            onCancelled: ++root.cancels
        }
    }

    function test_fromEveryStop_data() {
        return [
            {tag: "plan", view: plan, stops: 2},
            {tag: "slate not found", view: failed, stops: 3},
            {tag: "manual entry", view: form, stops: 18},
        ];
    }
    function test_fromEveryStop(data) {
        const view = createTemporaryObject(data.view, root, {width: 640, height: 480});
        waitForRendering(view);
        root.cancels = 0;
        let stop = view.nextItemInFocusChain();
        const first = stop;
        let visited = 0;
        do {
            stop.forceActiveFocus();
            keyClick(Qt.Key_Escape);
            ++visited;
            compare(root.cancels, visited, stop.toString());
            stop = stop.nextItemInFocusChain();
        } while (stop !== first && visited < 50);
        verify(visited >= data.stops, visited + " stops");
    }
}
