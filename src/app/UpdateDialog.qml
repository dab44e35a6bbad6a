// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Shows what the updater is at. Closing it gives up what is under way.
Dialog {
    id: root

    required property Updater updater

    readonly property DialogContent stage: loader.item as DialogContent

    name: "Software Update"
    contentHeight: loader.implicitHeight
    panelWidth: 640
    start: root.stage ? root.stage.start : loader

    onVisibleChanged: {
        if (!root.visible) {
            root.updater.dismiss();
        }
    }

    Connections {
        target: root.updater

        function onStageChanged(): void {
            if (root.updater.stage === Updater.Idle) {
                root.close();
            }
        }
    }
    Connections {
        target: root.stage

        function onClosed(): void {
            root.close();
        }
    }

    // By file, so that no other stage costs anything.
    Loader {
        id: loader

        readonly property string file: {
            switch (root.updater.stage) {
            case Updater.Checking:
                return "UpdateCheckingStage.qml";
            case Updater.UpToDate:
                return "UpdateUpToDateStage.qml";
            case Updater.Available:
                return "UpdateAvailableStage.qml";
            case Updater.Downloading:
            case Updater.Verifying:
                return "UpdateDownloadingStage.qml";
            case Updater.HandedOver:
                return "UpdateHandedOverStage.qml";
            case Updater.Failed:
                return "UpdateFailedStage.qml";
            default:
                return "";
            }
        }

        anchors.fill: parent
        onFileChanged: loader.setSource(loader.file, {updater: root.updater})
        onLoaded: {
            if (root.visible) {
                root.start.forceActiveFocus();
            }
        }
    }
}
