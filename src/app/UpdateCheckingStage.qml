// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

UpdateNotice {
    required property Updater updater

    title: "Checking for updates\u2026"
    message: ""
    buttonText: "CANCEL"
    busy: true
}
