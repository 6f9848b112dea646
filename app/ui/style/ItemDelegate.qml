// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// A row of a list. Its content is the user's; what is here answers touch, pointer, keys and assistive tools.
T.ItemDelegate {
    id: control

    implicitHeight: Math.max(Theme.touchTarget, implicitContentHeight + topPadding + bottomPadding)
    padding: Theme.cardPadding
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.readOnly: !enabled
    Accessible.onPressAction: if (enabled)
        clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        radius: Theme.groupRadius
        color: control.highlighted ? Theme.tinted(Theme.accent, 10) : "transparent"
        border.width: control.visualFocus ? 2 : 0
        border.color: Theme.accent

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.accent
            opacity: control.down ? 0.1 : control.hovered ? 0.05 : 0
        }
    }
}
