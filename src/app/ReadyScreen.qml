// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

PlanView {
    id: root

    required property Session session

    folderName: root.session.folderName
    slateName: root.session.slateName
    rows: root.session.payloadRows
    imageCount: root.session.imageCount
    backupMode: root.session.plannedMode
    onCancelled: root.session.reset()
    onConfirmed: root.session.runIngest()
}
