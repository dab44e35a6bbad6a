// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts

/// What stands in a dialog for as long as it says one thing.
ColumnLayout {
    /// Where the keyboard comes to.
    property Item start: null

    /// The dialog is to be closed.
    signal closed

    spacing: 16
}
