// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The look of FocusRing. A dark band inside the line keeps it apart from what is filled in
/// its colour.
Box {
    border.width: 4
    border.color: Theme.color.background

    Box {
        anchors.fill: parent
        border.width: 2
        border.color: Theme.color.primary
    }
}
