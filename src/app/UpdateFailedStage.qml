// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

UpdateFailure {
    id: root

    required property Updater updater

    message: root.updater.errorText
}
