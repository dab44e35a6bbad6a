// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// Sees to it that the keyboard is always on something: when whoever had it was disabled or
/// has gone, and nobody took it over, it comes to the neighbour.
Timer {
    id: root

    /// Where the keyboard is, and where it may be brought.
    required property Item activeItem
    required property Item within
    /// Off while somebody else sees to it, or the window has no keyboard at all.
    property bool active: true

    /// The item in there that had the keyboard last, as long as there is one.
    property Item last: null
    // A disabled item mostly loses the keyboard, a hidden one keeps it.
    readonly property bool useless:
        root.activeItem !== null && !(root.activeItem.visible && root.activeItem.enabled)

    /// There is no neighbour.
    signal nowhereToGo

    function isAstray(): bool {
        return root.activeItem === null || root.useless || root.activeItem.parent === null
               || root.activeItem instanceof Loader || root.activeItem instanceof FocusScope;
    }
    function isWithin(item: Item): bool {
        let each = item;
        while (each && each !== root.within) {
            each = each.parent;
        }
        return each !== null;
    }
    /// The next stop of the Tab key from the last item, if it is on the same screen.
    function neighbour(forward: bool): Item {
        if (!root.last || !root.isWithin(root.last)) {
            return null;
        }
        let next = root.last.nextItemInFocusChain(forward);
        if (next && !next.activeFocusOnTab) {
            // From what is hidden, the chain comes to an item around it first.
            next = next.nextItemInFocusChain(forward);
        }
        return next && next.activeFocusOnTab && root.isWithin(next) ? next : null;
    }
    function bringBack(): void {
        if (!root.active || !root.isAstray()) {
            return;
        }
        const next = root.neighbour(true) ?? root.neighbour(false);
        if (next) {
            next.forceActiveFocus();
        } else {
            root.nowhereToGo();
        }
    }

    // Not at once: while screens change, the next one is about to take the keyboard.
    interval: 0
    onTriggered: root.bringBack()

    onUselessChanged: {
        if (root.useless) {
            root.start();
        }
    }
    onActiveChanged: {
        // A window that has just come back is about to say where its keyboard is.
        if (root.active && root.activeItem !== null && root.isAstray()) {
            root.start();
        }
    }
    onActiveItemChanged: {
        if (root.isAstray()) {
            root.start();
        } else if (root.isWithin(root.activeItem)) {
            root.last = root.activeItem;
        }
    }
}
