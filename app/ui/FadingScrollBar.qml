// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T

/// A bar that shows where one is while one scrolls.
T.ScrollBar {
    id: root

    implicitWidth: Theme.unit
    implicitHeight: Theme.unit
    padding: 2
    minimumSize: 0.05
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        radius: Theme.half
        color: Theme.secondary
        opacity: root.pressed ? 0.8 : root.active ? 0.5 : 0
        Behavior on opacity {
            NumberAnimation {
                duration: Theme.appearDuration
            }
        }
    }
}
