// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

StatusView {
    id: root

    required property Session session

    eyebrow: "SCANNING"
    title: root.session.folderName
    subtitle: "Locating slate frame\u2026"
}
