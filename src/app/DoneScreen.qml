// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

DoneView {
    id: root

    required property Session session

    mutatedCount: root.session.mutatedCount
    backupCount: root.session.backupCount
    backupMode: root.session.plannedMode
    onRevealed: root.session.revealFolder()
    onReset: root.session.reset()
}
