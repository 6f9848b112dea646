// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// Filled when highlighted, bordered otherwise, plain words when flat. Another colour of the words comes through
/// `palette.buttonText`.
T.Button {
    id: control

    implicitWidth: Math.ceil(Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding))
    implicitHeight: Math.max(Theme.touchTarget, implicitContentHeight + topPadding + bottomPadding)
    horizontalPadding: 20
    verticalPadding: Theme.unit
    font: control.highlighted ? Theme.headline : Theme.body
    Accessible.name: text
    Accessible.readOnly: !enabled
    Accessible.onPressAction: if (enabled)
        clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: control.highlighted ? Theme.accentText : control.enabled ? control.palette.buttonText : Theme.secondary
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    background: Rectangle {
        implicitWidth: 64
        radius: Theme.cardRadius
        opacity: control.enabled || !control.highlighted ? 1 : 0.4
        color: control.highlighted ? Theme.accent : control.flat ? "transparent" : Theme.surface
        border.width: control.visualFocus ? 2 : control.flat || control.highlighted ? 0 : 1
        border.color: control.visualFocus ? (control.highlighted ? Theme.text : Theme.accent) : Theme.hairline

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: control.highlighted ? Theme.accentText : Theme.accent
            opacity: control.down ? 0.16 : control.hovered ? 0.08 : 0
        }
    }
}
