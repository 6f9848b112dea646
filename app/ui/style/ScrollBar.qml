// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

T.ScrollBar {
    id: control

    implicitWidth: Theme.unit
    implicitHeight: Theme.unit
    padding: 2
    minimumSize: 0.05
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1
    Accessible.ignored: true

    contentItem: Rectangle {
        radius: Theme.half
        color: Theme.secondary
        opacity: control.pressed ? 0.8 : control.active ? 0.5 : 0
        Behavior on opacity {
            NumberAnimation {
                duration: Theme.appearDuration
            }
        }
    }
}
