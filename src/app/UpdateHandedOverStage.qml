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
    note: root.updater.packageFile.length > 0
          ? "If nothing opens, the package is at " + root.updater.packageFile : ""
    buttonText: "CLOSE"
}
