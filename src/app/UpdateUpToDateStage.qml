// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

UpdateNotice {
    id: root

    required property Updater updater

    title: "You\u2019re up to date"
    message: "Quillmark " + root.updater.currentVersion + " is the newest version."
    buttonText: "CLOSE"
}
