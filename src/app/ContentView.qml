// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Not bound: the Loader of Qt 6.4 cannot instantiate bound components.
// qmllint disable unqualified

import QtQuick
import Quillmark

/// Owns the session and shows the screen of its state.
Item {
    id: root

    readonly property bool writing: session.screen === Session.Writing

    /// A run that wrote is over.
    signal runEnded(bool failed)

    onWritingChanged: {
        if (!root.writing) {
            root.runEnded(session.screen === Session.Error);
        }
    }

    /// A screen that exists only in its state.
    component Screen: Loader {
        required property int shownIn

        anchors.fill: parent
        anchors.margins: 40
        active: session.screen === shownIn
    }

    Session {
        id: session
    }

    Screen {
        shownIn: Session.Idle
        sourceComponent: DropZone {
            onPicked: folder => session.openFolder(folder)

            SettingsBar {
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                backupMode: session.backupMode
                recursive: session.recursive
                onBackupModePicked: rawMode => session.backupMode = rawMode
                onRecursiveToggled: recursive => session.recursive = recursive
            }
        }
    }
    Screen {
        shownIn: Session.Scanning
        sourceComponent: StatusView {
            eyebrow: "SCANNING"
            title: session.folderName
            subtitle: "Locating slate frame\u2026"
        }
    }
    Screen {
        shownIn: Session.Ready
        sourceComponent: PlanView {
            folderName: session.folderName
            slateName: session.slateName
            rows: session.payloadRows
            imageCount: session.imageCount
            backupMode: session.plannedMode
            onCancelled: session.reset()
            onConfirmed: session.runIngest()
        }
    }
    Screen {
        shownIn: Session.DetectionFailed
        sourceComponent: DetectionFailedView {
            folderName: session.folderName
            folder: session.folder
            triedCount: session.triedCount
            onCancelled: session.reset()
            onSlatePicked: image => session.retryWithSlate(image)
            onManualEntryChosen: session.enterManually()
        }
    }
    Screen {
        shownIn: Session.ManualEntry
        sourceComponent: ManualEntryView {
            folderName: session.folderName
            folder: session.folder
            initialSlateImage: session.slateImage
            onCancelled: session.reset()
            onSubmitted: form => session.submitManual(form)
        }
    }
    Screen {
        shownIn: Session.Writing
        sourceComponent: StatusView {
            eyebrow: "EMBEDDING"
            title: session.folderName
            subtitle: "exiftool \u00B7 " + session.imageCount + " image(s)"
        }
    }
    Screen {
        shownIn: Session.Done
        sourceComponent: DoneView {
            mutatedCount: session.mutatedCount
            backupCount: session.backupCount
            backupMode: session.plannedMode
            onRevealed: session.revealFolder()
            onReset: session.reset()
        }
    }
    Screen {
        shownIn: Session.Error
        sourceComponent: ErrorView {
            message: session.errorText
            onReset: session.reset()
        }
    }
}
