// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// The window's one menu. It closes before what was chosen begins, so that this finds the
/// keyboard where it was.
MenuPopup {
    id: root

    required property WindowActions actions

    name: "Quillmark"

    MenuLine {
        width: parent.width
        text: "About Quillmark"
        onChosen: {
            root.close();
            root.actions.aboutRequested();
        }
    }
    CheckForUpdatesView {
        width: parent.width
        updater: root.actions.updater
        viewModel: CheckForUpdatesViewModel {
            updater: root.actions.updater
        }
        onAboutToCheck: root.close()
    }
    MenuLine {
        width: parent.width
        text: "Quit Quillmark"
        shortcut: "Ctrl+Q"
        onChosen: {
            root.close();
            root.actions.quitRequested();
        }
    }
}
