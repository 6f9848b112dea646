// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// Whether the host is reached, and when it was last heard of; once nothing comes for a while, why, and what helps.
Item {
    id: root

    required property ConnectionState connection

    implicitHeight: column.height
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Connection")

    Column {
        id: column

        width: root.width

        Item {
            width: column.width
            height: Math.max(Theme.touchTarget, words.height + 2 * Theme.cardPadding)

            Rectangle {
                anchors.left: parent.left
                anchors.leftMargin: Theme.cardPadding + 9
                anchors.verticalCenter: parent.verticalCenter
                width: 8
                height: 8
                radius: 4
                color: Theme.tone(root.connection.tone)
            }
            Label {
                id: words

                anchors.left: parent.left
                anchors.leftMargin: Theme.cardPadding + 26 + Theme.unit
                anchors.right: contact.left
                anchors.rightMargin: Theme.unit
                anchors.verticalCenter: parent.verticalCenter
                text: root.connection.text
                font: Theme.subheadline
            }
            Label {
                id: contact

                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                anchors.baseline: words.baseline
                text: root.connection.lastContact
                font: Theme.caption
                color: Theme.secondary
                wrapMode: Text.NoWrap
            }
        }
        Item {
            width: column.width
            height: Math.max(reason.height, remedy.height) + Theme.half
            visible: root.connection.notice.length > 0

            Label {
                id: reason

                anchors.left: parent.left
                anchors.leftMargin: Theme.cardPadding + 26 + Theme.unit
                anchors.right: remedy.left
                anchors.rightMargin: Theme.half
                anchors.verticalCenter: remedy.verticalCenter
                text: root.connection.notice
                font: Theme.footnote
                color: root.connection.refused ? Theme.red : Theme.secondary
            }
            TextButton {
                id: remedy

                anchors.right: parent.right
                text: root.connection.refused ? qsTr("Pair again") : qsTr("Reconnect now")
                strong: root.connection.refused
                onClicked: root.connection.refused ? root.connection.forgetPairing() : root.connection.reconnect()
            }
        }
        TextButton {
            anchors.right: parent.right
            visible: root.connection.refused
            strong: false
            text: qsTr("Reconnect now")
            onClicked: root.connection.reconnect()
        }
    }
}
