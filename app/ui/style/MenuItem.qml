// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// Its action may name a symbol of ours, and a tone for its words.
T.MenuItem {
    id: control

    readonly property SwipeAction look: action as SwipeAction

    implicitWidth: Math.max(200, words.implicitWidth + 72)
    implicitHeight: Theme.touchTarget
    font: Theme.body
    Accessible.name: text
    Accessible.readOnly: !enabled
    Accessible.onPressAction: if (enabled)
        triggered()

    // qmllint disable deferred-property-id
    contentItem: Item {
        SymbolText {
            id: mark

            anchors.left: parent.left
            anchors.leftMargin: Theme.margin
            anchors.verticalCenter: parent.verticalCenter
            visible: control.look !== null
            symbol: control.look ? control.look.symbol : ""
            size: 20
            color: words.color
        }
        Text {
            id: words

            anchors.left: parent.left
            anchors.leftMargin: mark.visible ? 48 : Theme.margin
            anchors.verticalCenter: parent.verticalCenter
            text: control.text
            textFormat: Text.PlainText
            font: control.font
            color: !control.enabled ? Theme.secondary : control.look && control.look.tone === "red" ? Theme.red : Theme.text
            Accessible.ignored: true
        }
    }
    // qmllint enable deferred-property-id
    background: Rectangle {
        x: Theme.half
        width: control.width - 2 * x
        radius: Theme.codeRadius
        color: control.highlighted || control.down ? Theme.tinted(Theme.accent, 10) : "transparent"
    }
}
