// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick

/// Every colour, size of text, distance and duration of the application. The window binds the four settings on top to
/// what the person set for the desktop.
QtObject {
    id: root

    property bool dark: false
    property bool highContrast: false
    property bool reducedMotion: false
    property real textScale: 1

    readonly property color page: dark ? "#0F1115" : "#F4F5F7"
    readonly property color surface: dark ? "#171A20" : "#FFFFFF"
    readonly property color text: dark ? "#ECEFF4" : "#14171C"
    readonly property color secondary: highContrast ? text : dark ? "#A4AEBC" : "#596372"
    readonly property color hairline: highContrast ? text : dark ? "#2A2F38" : "#E2E5EA"
    readonly property color accent: dark ? "#90A8FF" : "#3A5CCC"
    readonly property color track: highContrast ? secondary : dark ? "#4A5262" : "#B9C0CB"
    readonly property color accentText: dark ? "#0F1115" : "#FFFFFF"
    readonly property color blue: dark ? "#74B4FF" : "#1667CF"
    readonly property color green: dark ? "#62C784" : "#1C7A39"
    readonly property color orange: dark ? "#F0A45C" : "#A94E00"
    readonly property color red: dark ? "#FF8078" : "#C0302B"
    readonly property color indigo: dark ? "#AAA0FF" : "#5A4BD1"
    readonly property color dim: Qt.rgba(0, 0, 0, dark ? 0.5 : 0.32)
    readonly property color viewfinder: "#000000"
    readonly property color viewfinderText: "#ECEFF4"
    readonly property var tones: ({
            "secondary": secondary,
            "accent": accent,
            "blue": blue,
            "green": green,
            "orange": orange,
            "red": red,
            "indigo": indigo
        })

    readonly property var families: Qt.fontFamilies()
    readonly property string family: families.indexOf("Inter") >= 0 ? "Inter" : systemMetrics.font.family
    readonly property FontMetrics systemMetrics: FontMetrics {}
    readonly property font title2: scaled(22, Font.DemiBold)
    readonly property font title3: scaled(20, Font.DemiBold)
    readonly property font headline: scaled(17, Font.DemiBold)
    readonly property font body: scaled(17, Font.Normal)
    readonly property font callout: scaled(16, Font.Normal)
    readonly property font subheadline: scaled(15, Font.Normal)
    readonly property font subheadlineMedium: scaled(15, Font.Medium)
    readonly property font footnote: scaled(13, Font.Normal)
    readonly property font caption: scaled(12, Font.Normal)
    readonly property font captionBold: scaled(12, Font.Bold)
    readonly property font caption2Bold: scaled(11, Font.Bold)
    readonly property string codeFamily: "monospace"
    readonly property font code: monospaced(16)
    readonly property font codeCaption: monospaced(12)
    /// Factors on the font's own line height, which differs by a fifth between fonts, so that lines stand 1.3 and 1.2
    /// times their size apart.
    readonly property real readingLeading: Math.max(1, 1.3 * body.pixelSize / bodyMetrics.lineSpacing)
    readonly property real labelLeading: Math.max(1, 1.2 * body.pixelSize / bodyMetrics.lineSpacing)
    readonly property FontMetrics bodyMetrics: FontMetrics {
        font: root.body
    }

    readonly property int half: 4
    readonly property int unit: 8
    readonly property int margin: 16
    readonly property int cardPadding: 12
    readonly property int groupPadding: 10
    readonly property int cardRadius: 12
    readonly property int groupRadius: 10
    readonly property int codeRadius: 8
    readonly property int fieldRadius: 18
    readonly property int touchTarget: 44
    readonly property int contentWidth: 760
    readonly property int listWidth: 340
    readonly property int wideFrom: 720

    readonly property int appearDuration: 160
    readonly property int pushDuration: reducedMotion ? 0 : 240

    /// The colour of that name; the text's own for a name that is none.
    function tone(name: string): color {
        return root.tones[name] ?? root.text;
    }

    /// The surface under a veil of the colour: `percent` of it, twice that in high contrast.
    function tinted(base: color, percent: real): color {
        return Qt.tint(root.surface, Qt.rgba(base.r, base.g, base.b, percent * (root.highContrast ? 2 : 1) / 100));
    }

    function monospaced(pixels: real): font {
        return Qt.font({
            family: root.codeFamily,
            pixelSize: Math.round(pixels * root.textScale)
        });
    }

    /// A veil of the colour over whatever lies under it.
    function veil(base: color, percent: real): color {
        return Qt.rgba(base.r, base.g, base.b, percent * (root.highContrast ? 2 : 1) / 100);
    }

    function scaled(pixels: real, weight: int): font {
        return Qt.font({
            family: root.family,
            pixelSize: Math.round(pixels * root.textScale),
            weight: weight
        });
    }
}
