// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import Quillmark

/// The menu's line for looking for updates. It can be chosen while its updater can check.
MenuLine {
    id: root

    required property Updater updater
    required property CheckForUpdatesViewModel viewModel

    /// The check begins as soon as everybody has heard of it.
    signal aboutToCheck

    text: "Check for Updates\u2026"
    available: root.viewModel.canCheckForUpdates
    onChosen: {
        root.aboutToCheck();
        root.updater.checkForUpdates();
    }
}
