// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// Whether the host is reached, and when it was last heard of.
Rectangle {
    id: root

    required property SessionsViewState sessions

    implicitHeight: column.height + 2 * Theme.cardPadding
    radius: Theme.cardRadius
    color: Theme.surface

    Column {
        id: column

        x: Theme.cardPadding
        y: Theme.cardPadding
        width: root.width - 2 * Theme.cardPadding
        spacing: Theme.unit

        Item {
            width: column.width
            height: words.height

            Rectangle {
                id: dot

                x: 9
                anchors.verticalCenter: parent.verticalCenter
                width: 8
                height: 8
                radius: 4
                color: Theme.tone(root.sessions.connectionTone)
            }
            Label {
                id: words

                anchors.left: parent.left
                anchors.leftMargin: 26 + Theme.unit
                anchors.right: contact.left
                anchors.rightMargin: Theme.unit
                text: root.sessions.connectionText
                font: Theme.subheadline
            }
            Label {
                id: contact

                anchors.right: parent.right
                anchors.baseline: words.baseline
                text: root.sessions.lastContact
                font: Theme.caption
                color: Theme.secondary
                wrapMode: Text.NoWrap
            }
        }
        Button {
            visible: root.sessions.refused
            width: column.width
            highlighted: true
            text: qsTr("Pair again")
            onClicked: root.sessions.forgetPairing()
        }
    }
}
