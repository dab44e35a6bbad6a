// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// The result of a run.
ColumnLayout {
    id: root

    required property int mutatedCount
    required property int backupCount
    required property string backupMode

    signal revealed
    signal reset

    spacing: 24

    BackupModeText {
        id: mode
        rawValue: root.backupMode
    }

    StepText {
        id: step
        text: "03 / DONE"
        color: Theme.color.secondary
    }
    HeadlineText {
        id: headline
        Layout.fillWidth: true
        text: "METADATA EMBEDDED"
    }
    RowLayout {
        Layout.topMargin: 16
        Layout.bottomMargin: 16
        spacing: 32

        Statistic {
            label: "MUTATED"
            value: root.mutatedCount
        }
        Statistic {
            visible: root.backupCount !== 0
            label: "BACKED UP"
            value: root.backupCount
        }
        Statistic {
            label: "MODE"
            value: mode.title
        }
    }
    Item {
        Layout.fillHeight: true
    }
    RowLayout {
        Layout.fillWidth: true
        spacing: 16

        OutlinedButton {
            text: "REVEAL IN FINDER"
            onClicked: root.revealed()
        }
        Item {
            Layout.fillWidth: true
        }
        FilledButton {
            text: "INGEST ANOTHER  \u2192"
            focus: true
            onClicked: root.reset()

            Accessible.description: step.text + "\n" + headline.text
        }
    }
}
