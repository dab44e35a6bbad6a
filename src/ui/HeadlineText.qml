// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// A headline of a few lines at most: what does not fit is cut short.
StyledText {
    style: Theme.font.headline
    tracking: -1.0
    wrapMode: Text.Wrap
    elide: Text.ElideRight
    maximumLineCount: 2
}
