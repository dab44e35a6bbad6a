// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

pragma ComponentBehavior: Bound

import QtQuick
import Quillmark

/// Says that something goes on for an unknown time: twelve spokes, of which the brightest
/// moves on twelve times a second. A step turns the whole, so nothing is computed between
/// steps.
Item {
    id: root

    implicitWidth: 32
    implicitHeight: 32

    Accessible.role: Accessible.Animation
    Accessible.ignored: !root.visible

    Repeater {
        model: 12

        Rectangle {
            id: spoke

            required property int index

            x: (root.width - spoke.width) / 2
            width: 3
            height: 9
            radius: 1.5
            color: Theme.color.primary
            opacity: 0.15 + 0.85 * spoke.index / 11
            transform: Rotation {
                origin.x: 1.5
                origin.y: root.height / 2
                angle: spoke.index * 30
            }
        }
    }

    function step(): void {
        root.rotation = (root.rotation + 30) % 360;
    }

    SequentialAnimation {
        running: root.visible
        loops: Animation.Infinite

        PauseAnimation {
            duration: 83
        }
        ScriptAction {
            script: root.step()
        }
    }
}
