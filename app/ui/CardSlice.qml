// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// A row's part of the card that the rows of a section lie on: round at the ends of the section, parted by hairlines.
Item {
    id: root

    required property bool firstRow
    required property bool lastRow
    property bool selected: false
    property bool pressed: false
    property bool hovered: false
    property bool focused: false
    property real inset: Theme.cardPadding

    clip: true

    Rectangle {
        y: root.firstRow ? 0 : -radius
        width: parent.width
        height: parent.height - y + (root.lastRow ? 0 : radius)
        radius: Theme.cardRadius
        color: root.selected ? Theme.tinted(Theme.accent, 10) : Theme.surface

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.accent
            opacity: root.pressed ? 0.1 : root.hovered ? 0.05 : 0
        }
    }
    Rectangle {
        x: root.inset
        y: parent.height - 1
        width: parent.width - x
        height: 1
        visible: !root.lastRow
        color: Theme.hairline
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        visible: root.focused
        radius: Theme.cardRadius
        color: "transparent"
        border.width: 2
        border.color: Theme.accent
    }
}
