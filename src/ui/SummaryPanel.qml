// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillmark

/// What a run will do.
ScrollPanel {
    id: root

    required property int imageCount
    required property string backupMode

    spacing: 12

    BackupModeText {
        id: mode
        rawValue: root.backupMode
    }

    PanelTitle {
        text: "ROLL"
    }
    Item {
        id: total
        Layout.fillWidth: true
        implicitHeight: figure.implicitHeight

        // Set smaller where a number is too long for the panel.
        StyledText {
            id: figure
            width: Math.min(Math.ceil(figure.implicitWidth),
                            total.width - images.anchors.leftMargin - images.width)
            style: Theme.font.figure
            fontSizeMode: Text.HorizontalFit
            text: root.imageCount
        }
        LabelText {
            id: images
            anchors.left: figure.right
            anchors.leftMargin: 8
            anchors.baseline: figure.baseline
            text: "IMAGES"
        }
    }
    Divider {
        Layout.fillWidth: true
        Layout.topMargin: 8
        Layout.bottomMargin: 8
    }
    LabelText {
        text: "BACKUP MODE"
    }
    TitleText {
        Layout.fillWidth: true
        text: mode.title
    }
    StyledText {
        Layout.fillWidth: true
        style: Theme.font.caption
        text: mode.description
        color: Theme.color.onSurfaceVariant
        wrapMode: Text.Wrap
    }
}
