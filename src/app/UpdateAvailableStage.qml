// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

UpdateOffer {
    id: root

    required property Updater updater

    newVersion: root.updater.newVersion
    currentVersion: root.updater.currentVersion
    notes: root.updater.notes
    asked: root.updater.userInitiated
    onInstalled: root.updater.install()
    onSkipped: root.updater.skip()
    onLinkPressed: address => Qt.openUrlExternally(address)
}
