// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

DetectionFailedView {
    id: root

    required property Session session

    folderName: root.session.folderName
    folder: root.session.folder
    triedCount: root.session.triedCount
    onCancelled: root.session.reset()
    onSlatePicked: image => root.session.retryWithSlate(image)
    onManualEntryChosen: root.session.enterManually()
}
