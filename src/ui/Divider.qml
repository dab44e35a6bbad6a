// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

Rectangle {
    implicitHeight: 1
    color: Theme.color.outlineVariant
}
