// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

StyledText {
    style: Theme.font.title
    wrapMode: Text.Wrap
    elide: Text.ElideRight
    maximumLineCount: 2
}
