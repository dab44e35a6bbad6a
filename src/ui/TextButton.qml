// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

PlainButton {
    tracking: 2.5
    textColor: Theme.color.primary
}
