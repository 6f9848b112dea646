// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// A slim bar of which `percent` is filled. Decoration: the words beside it say the same.
Rectangle {
    id: root

    required property int percent
    property color tone: Theme.accent

    implicitHeight: 6
    radius: height / 2
    color: Theme.tinted(Theme.secondary, 20)
    Accessible.ignored: true

    Rectangle {
        anchors.left: parent.left
        width: root.percent > 0 ? Math.max(parent.height, parent.width * root.percent / 100) : 0
        height: parent.height
        radius: parent.radius
        color: root.tone
    }
}
