// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

StyledText {
    style: Theme.font.mono
    color: Theme.color.onSurfaceVariant
}
