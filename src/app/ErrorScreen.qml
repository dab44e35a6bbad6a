// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

ErrorView {
    id: root

    required property Session session

    message: root.session.errorText
    onReset: root.session.reset()
}
