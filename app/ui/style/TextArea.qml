// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

T.TextArea {
    id: control

    implicitHeight: contentHeight + topPadding + bottomPadding
    leftPadding: Theme.cardPadding
    rightPadding: Theme.cardPadding
    topPadding: Theme.groupPadding
    bottomPadding: Theme.groupPadding
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    placeholderTextColor: Theme.secondary
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    Accessible.name: placeholderText

    Text {
        x: control.leftPadding
        y: control.topPadding
        width: control.width - control.leftPadding - control.rightPadding
        visible: control.length === 0 && control.preeditText.length === 0
        text: control.placeholderText
        textFormat: Text.PlainText
        font: control.font
        color: control.placeholderTextColor
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
