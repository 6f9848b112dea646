// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick

/// Eight dots that take turns: something is under way and nobody knows how long. With reduced motion the dots stand
/// still and only their opacity moves.
Item {
    id: root

    property bool running: true
    property color color: Theme.secondary
    property real size: 20
    property int step: 0

    implicitWidth: size
    implicitHeight: size

    Timer {
        interval: 120
        repeat: true
        running: root.running && root.visible
        onTriggered: root.step = (root.step + 1) % 8
    }
    Repeater {
        model: 8
        Rectangle {
            required property int index
            readonly property real angle: index * Math.PI / 4

            x: root.size / 2 + Math.sin(angle) * root.size * 0.38 - width / 2
            y: root.size / 2 - Math.cos(angle) * root.size * 0.38 - height / 2
            width: root.size / 6
            height: width
            radius: width / 2
            color: root.color
            opacity: 1 - ((root.step - index + 8) % 8) * 0.11
        }
    }
}
