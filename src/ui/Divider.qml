// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

Box {
    implicitHeight: 1
    color: Theme.color.outlineVariant
}
