// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// What the bridge sends once the running turn has ended, to be changed or taken back until then.
Column {
    id: root

    required property ComposerState composer

    visible: messages.count > 0
    spacing: Theme.half

    Label {
        width: root.width
        leftPadding: Theme.half
        text: qsTr("Send when done")
        font: Theme.captionBold
        color: Theme.secondary
    }
    Repeater {
        id: messages

        model: root.composer.queue

        Rectangle {
            id: message

            required property string id
            required property string text
            required property string note
            required property bool failed

            width: root.width
            height: Math.max(Theme.touchTarget, words.height + 2 * Theme.unit)
            radius: Theme.groupRadius
            color: Theme.tinted(message.failed ? Theme.red : Theme.secondary, 8)
            Accessible.role: Accessible.Grouping
            Accessible.name: text + (note.length > 0 ? ", " + note : "")

            Column {
                id: words

                x: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                width: tools.x - x

                Text {
                    width: words.width
                    text: message.text
                    textFormat: Text.PlainText
                    font: Theme.subheadline
                    color: Theme.text
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                Text {
                    visible: text.length > 0
                    width: words.width
                    text: message.note
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: message.failed ? Theme.red : Theme.secondary
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
            }
            Row {
                id: tools

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter

                QuietButton {
                    symbol: "pencil"
                    label: qsTr("Edit queued message")
                    onClicked: root.composer.editQueued(message.id)
                }
                QuietButton {
                    symbol: "xmark"
                    label: qsTr("Cancel queued message")
                    onClicked: root.composer.cancelQueued(message.id)
                }
            }
        }
    }
}
