// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

/// The numbered caption on top of a screen.
StyledText {
    style: Theme.font.label
    tracking: 3.5
}
