// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

/// The package is fetched, and then verified.
UpdateProgress {
    id: root

    required property Updater updater

    newVersion: root.updater.newVersion
    received: root.updater.received
    expected: root.updater.expected
    verifying: root.updater.stage === Updater.Verifying
}
