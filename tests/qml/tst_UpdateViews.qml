// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

/// What the update dialog holds, in the smallest window.
ScreenTest {
    id: root

    name: "UpdateViews"
    width: 720
    height: 560
    screen: Component {
        Item {
            id: window

            property Component part
            property int closings: 0

            Dialog {
                objectName: "dialog"
                anchors.fill: parent
                name: "Software Update"
                panelWidth: 640
                contentHeight: loader.implicitHeight
                start: loader.item.start

                Loader {
                    id: loader
                    objectName: "loader"
                    anchors.fill: parent
                    sourceComponent: window.part
                }
                Connections {
                    target: loader.item

                    function onClosed(): void {
                        ++window.closings;
                    }
                }
            }
        }
    }

    readonly property string longWord: "w".repeat(200)
    readonly property string manyWords: "word ".repeat(2000)

    ListModel {
        id: noteLines
    }
    Component {
        id: notice
        UpdateNotice {
            title: "You\u2019re up to date"
            message: "Quillmark 1.0 is the newest version."
            buttonText: "CLOSE"
        }
    }
    Component {
        id: longNotice
        UpdateNotice {
            title: root.longWord
            message: root.longWord
            buttonText: "CLOSE"
        }
    }
    Component {
        id: checking
        UpdateNotice {
            title: "Checking for updates\u2026"
            message: ""
            buttonText: "CANCEL"
            busy: true
        }
    }
    Component {
        id: failure
        UpdateFailure {
            message: "<b>It</b> broke."
        }
    }
    Component {
        id: longFailure
        UpdateFailure {
            message: root.manyWords + root.longWord
        }
    }
    Component {
        id: progress
        UpdateProgress {
            newVersion: "2.0"
            received: 2500000
            expected: 10000000
            verifying: false
        }
    }
    Component {
        id: unmeasured
        UpdateProgress {
            newVersion: "2.0"
            received: 2500000
            expected: -1
            verifying: true
        }
    }
    Component {
        id: offer
        UpdateOffer {
            property int installs: 0
            property int skips: 0
            property list<url> pressed

            newVersion: "2.0"
            currentVersion: "1.0"
            notes: noteLines
            onInstalled: ++installs
            onSkipped: ++skips
            onLinkPressed: address => pressed.push(address)
        }
    }

    function init() {
        noteLines.clear();
    }
    function append(kind: string, text: string, mark = ""): void {
        noteLines.append({kind, text, address: kind === "Link" ? text : "", mark});
    }
    function open(part: Component): Item {
        show({part: part});
        findChild(item, "dialog").open();
        waitForRendering(item);
        return findChild(item, "loader").item;
    }
    /// Everything that is shown stands on the panel, and the panel in the window.
    function compareIsInside(): void {
        const panel = findChild(item, "loader").parent.parent;
        const box = place(panel);
        verify(box.x >= 0 && box.y >= 0, "panel " + box);
        verify(box.x + box.width <= item.width && box.y + box.height <= item.height,
               "panel " + box);
        for (const text of ["CLOSE", "CANCEL", "INSTALL", "SKIP THIS VERSION", "REMIND ME LATER"]) {
            for (const each of all(text)) {
                const there = place(each);
                verify(there.x >= box.x + 32 && there.y >= box.y + 32, text + " " + there);
                verify(there.x + there.width <= box.x + box.width - 31, text + " " + there);
                verify(there.y + there.height <= box.y + box.height - 31, text + " " + there);
            }
        }
    }

    function test_everythingStaysInside_data() {
        return [
            {tag: "notice", part: notice, button: "CLOSE"},
            {tag: "long notice", part: longNotice, button: "CLOSE"},
            {tag: "checking", part: checking, button: "CANCEL"},
            {tag: "failure", part: failure, button: "CLOSE"},
            {tag: "long failure", part: longFailure, button: "CLOSE"},
            {tag: "progress", part: progress, button: "CANCEL"},
            {tag: "unmeasured", part: unmeasured, button: "CANCEL"},
        ];
    }
    function test_everythingStaysInside(data) {
        open(data.part);
        compareIsInside();
        verify(button(data.button).activeFocus);
        click(data.button);
        compare(item.closings, 1);
    }

    function test_noticeTexts() {
        open(notice);
        compareStyle("You\u2019re up to date", Theme.color.onSurface, 0, Theme.font.title);
        compareStyle("Quillmark 1.0 is the newest version.", Theme.color.onSurfaceVariant, 0,
                     Theme.font.body);
    }

    function test_failureIsShownAsItIs() {
        open(failure);
        compareStyle("The update failed", Theme.color.tertiary, 0, Theme.font.title);
        compareStyle("<b>It</b> broke.", Theme.color.onSurfaceVariant, 0, Theme.font.mono);
    }

    function test_longFailureScrolls() {
        open(longFailure);
        const flickable = findChild(item, "flickable");
        verify(flickable.contentHeight > flickable.height);
        verify(flickable.height > 100);
    }

    function test_progressShowsItsShare() {
        open(progress);
        verify(shows("Downloading Quillmark 2.0\u2026"));
        verify(shows("2.5 MB of 10.0 MB"));
        const done = findChild(item, "done");
        fuzzyCompare(done.width, done.parent.width / 4, 0.01);
        verify(Qt.colorEqual(done.color, Theme.color.primary));
    }

    function test_progressOfUnknownLength() {
        open(unmeasured);
        verify(shows("Verifying Quillmark 2.0\u2026"));
        verify(shows("2.5 MB"));
        verify(!findChild(item, "done").parent.visible);
    }

    function test_offerShowsItsNotes() {
        append("Heading", "<i>New</i>");
        append("Item", "item", "\u2022  ");
        append("Code", "code");
        append("Link", "https://e.org/");
        const view = open(offer);
        compareIsInside();
        compareStyle("Quillmark 2.0 can be installed. You have 1.0.",
                     Theme.color.onSurfaceVariant, 0, Theme.font.body);
        compareStyle("<i>New</i>", Theme.color.onSurface, 0, Theme.font.title);
        compareStyle("item", Theme.color.onSurfaceVariant, 0, Theme.font.body);
        verify(label("item").x > 0, "the text stands beside its mark");
        compareStyle("code", Theme.color.onSurfaceVariant, 0, Theme.font.mono);
        compare(view.pressed.length, 0);
        click("https://e.org/");
        compare(view.pressed.length, 1);
        click("SKIP THIS VERSION");
        compare(view.skips, 1);
        click("INSTALL");
        compare(view.installs, 1);
        click("REMIND ME LATER");
        compare(item.closings, 1);
    }

    function test_longNotesScroll() {
        for (let i = 0; i < 50; ++i) {
            append("Paragraph", manyWords.slice(0, 300));
            append("Link", "https://e.org/" + longWord);
        }
        open(offer);
        compareIsInside();
        const flickable = findChild(item, "flickable");
        verify(flickable.contentHeight > 3 * flickable.height);
        verify(flickable.height > 100);
        const link = all("https://e.org/" + longWord)[0];
        verify(link.width <= flickable.width);
        // The keyboard brings what it comes to into view.
        verify(button("INSTALL").activeFocus);
        for (let stops = 0; stops < 5; ++stops) {
            keyClick(Qt.Key_Tab, Qt.ShiftModifier);
        }
        const last = all("https://e.org/" + longWord).find(each => each.activeFocus);
        verify(last);
        const seen = last.mapToItem(flickable, 0, 0);
        verify(seen.y >= 0 && seen.y + last.height <= flickable.height, "link at " + seen.y);
    }
}
