// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

import QtQuick
import QtTest
import Quillmark

TestCase {
    name: "Theme"

    function test_colors_data() {
        return [
            {tag: "background", hex: "#0E0E0E"},
            {tag: "surfaceContainerLow", hex: "#161514"},
            {tag: "surfaceContainer", hex: "#1F1D1B"},
            {tag: "onSurface", hex: "#E7E5E4"},
            {tag: "onSurfaceVariant", hex: "#A8A29E"},
            {tag: "outlineVariant", hex: "#44403C"},
            {tag: "primary", hex: "#EABF8D"},
            {tag: "secondary", hex: "#84A594"},
            {tag: "tertiary", hex: "#FF7162"},
        ];
    }
    function test_colors(data) {
        compare(Theme.color[data.tag].toString(), data.hex.toLowerCase());
    }

    function test_sizesFollowTheSystemFont_data() {
        return [
            {tag: "headline", scale: 2.0, weight: Font.Bold},
            {tag: "title", scale: 1.31, weight: Font.DemiBold},
            {tag: "body", scale: 1.0, weight: Font.Normal},
            {tag: "mono", scale: 0.92, weight: Font.Normal},
            {tag: "label", scale: 0.77, weight: Font.Medium},
            {tag: "caption", scale: 0.77, weight: Font.Normal},
        ];
    }
    function test_sizesFollowTheSystemFont(data) {
        const font = Theme.font[data.tag];
        fuzzyCompare(font.pointSize, Qt.application.font.pointSize * data.scale, 0.01);
        compare(font.weight, data.weight);
    }

    function test_trackingChangesNothingElse() {
        const tracked = Theme.tracked(Theme.font.label, 2.5);
        compare(tracked.letterSpacing, 2.5);
        compare(tracked.pointSize, Theme.font.label.pointSize);
        compare(tracked.family, Theme.font.label.family);
    }
}
