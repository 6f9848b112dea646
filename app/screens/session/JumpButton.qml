// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// Leads to the newest entry, and says how many replies there are below.
T.AbstractButton {
    id: root

    required property int replies

    implicitWidth: Math.max(Theme.touchTarget, row.width + 2 * Theme.cardPadding)
    implicitHeight: Theme.touchTarget
    Accessible.role: Accessible.Button
    Accessible.name: replies > 0 ? qsTr("Jump to newest, %n reply(s) below", "", replies) : qsTr("Jump to newest")
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        radius: height / 2
        color: root.down || root.hovered ? Theme.tinted(Theme.accent, 10) : Theme.surface
        border.width: root.visualFocus ? 2 : 1
        border.color: root.visualFocus ? Theme.accent : Theme.hairline
    }
    contentItem: Item { // qmllint disable deferred-property-id
        Row {
            id: row

            anchors.centerIn: parent
            spacing: 2

            SymbolText {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "arrow.down"
                size: 20
                color: Theme.accent
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.replies > 0
                text: root.replies
                textFormat: Text.PlainText
                font: Theme.captionBold
                color: Theme.accent
                Accessible.ignored: true
            }
        }
    }
}
