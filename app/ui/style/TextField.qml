// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

T.TextField {
    id: control

    implicitWidth: 240
    implicitHeight: Math.max(Theme.touchTarget, contentHeight + topPadding + bottomPadding)
    leftPadding: Theme.cardPadding
    rightPadding: Theme.cardPadding
    topPadding: Theme.unit
    bottomPadding: Theme.unit
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    placeholderTextColor: Theme.secondary
    verticalAlignment: TextInput.AlignVCenter
    Accessible.name: placeholderText

    Text {
        anchors.left: parent.left
        anchors.leftMargin: control.leftPadding
        width: control.width - control.leftPadding - control.rightPadding
        height: control.height
        visible: control.length === 0 && control.preeditText.length === 0
        text: control.placeholderText
        textFormat: Text.PlainText
        font: control.font
        color: control.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.groupRadius
        color: Theme.surface
        border.width: control.activeFocus ? 2 : 1
        border.color: control.activeFocus ? Theme.accent : Theme.hairline
    }
}
