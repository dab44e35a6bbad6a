// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick

/// Items side by side, all with a `minimumWidth` and a width that widthOf() gives them. Where there
/// is room, each is as wide as it likes to be; where there is not, all give way evenly, none below
/// its minimum. None may be hidden.
///
/// For the first screen, which does not wait for QtQuick.Layouts to be loaded.
Item {
    id: root

    default property alias items: row.data
    property alias spacing: row.spacing

    readonly property real minimumWidth: root.total(each => each.minimumWidth)
    /// What there is of the room between the least width and the implicit one: 0 to 1.
    readonly property real share: {
        const spare = root.implicitWidth - root.minimumWidth;
        return spare > 0 ? Math.max(0, Math.min(1, (root.width - root.minimumWidth) / spare)) : 1;
    }

    /// What an item in here takes for its width: to whole pixels, and so that they end where the
    /// row does.
    function widthOf(item: Item): real {
        let end = 0;
        let start = 0;
        for (const each of root.members()) {
            start = end;
            end += each.minimumWidth
                   + root.share * (Math.ceil(each.implicitWidth) - each.minimumWidth);
            if (each === item) {
                break;
            }
        }
        return Math.round(end) - Math.round(start);
    }
    // A repeater is among the children, too.
    function members(): var {
        return Array.from(row.children).filter(each => each.minimumWidth !== undefined);
    }
    function total(measure: var): real {
        const all = root.members();
        return all.reduce((sum, each) => sum + measure(each),
                          Math.max(0, all.length - 1) * root.spacing);
    }

    implicitWidth: root.total(each => Math.ceil(each.implicitWidth))
    implicitHeight: root.members().reduce((most, each) => Math.max(most, each.implicitHeight), 0)

    Row {
        id: row
        height: root.height
    }
}
