// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

StatusView {
    id: root

    required property Session session

    eyebrow: "EMBEDDING"
    title: root.session.folderName
    subtitle: "exiftool \u00B7 " + root.session.imageCount + " image(s)"
}
