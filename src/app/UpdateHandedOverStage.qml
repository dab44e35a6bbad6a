// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

UpdateNotice {
    id: root

    required property Updater updater

    title: "Ready to install"
    message: "Quillmark " + root.updater.newVersion + " was verified and given to the system\u2019s "
             + "installer. Quit Quillmark before you confirm it there."
    buttonText: "CLOSE"
}
