// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

ManualEntryView {
    id: root

    required property Session session

    folderName: root.session.folderName
    folder: root.session.folder
    initialSlateImage: root.session.slateImage
    onCancelled: root.session.reset()
    onSubmitted: form => root.session.submitManual(form)
}
