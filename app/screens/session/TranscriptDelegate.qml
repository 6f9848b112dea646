// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui

/// A message in its bubble, or one line for something the agent did. Its height is known at once, so that the list can
/// be positioned exactly.
Rectangle {
    id: root

    required property bool message
    required property bool fromUser
    required property string author
    required property string text
    required property string status
    required property string spoken
    readonly property real padding: message ? Theme.cardPadding : Theme.groupPadding

    height: column.height + 2 * padding
    radius: message ? Theme.cardRadius : Theme.groupRadius
    color: message ? (fromUser ? Theme.tinted(Theme.accent, 10) : Theme.tinted(Theme.secondary, 8)) : Theme.tinted(Theme.secondary, 6)
    border.width: activeFocus ? 2 : 0
    border.color: Theme.accent
    Accessible.role: Accessible.ListItem
    Accessible.name: spoken

    Column {
        id: column

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        spacing: Theme.half

        Text {
            visible: root.message
            width: column.width
            text: root.author
            textFormat: Text.PlainText
            font: Theme.captionBold
            color: root.fromUser ? Theme.accent : Theme.secondary
            Accessible.ignored: true
        }
        Text {
            visible: root.message && text.length > 0
            width: column.width
            text: root.message ? root.text : ""
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.text
            lineHeight: Theme.readingLeading
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            visible: !root.message
            width: column.width
            height: Math.max(toolIcon.height, toolTitle.height)

            SymbolText {
                id: toolIcon

                symbol: "wrench.and.screwdriver"
                size: 18
                color: Theme.secondary
            }
            Text {
                id: toolTitle

                anchors.left: toolIcon.right
                anchors.leftMargin: Theme.unit
                anchors.right: statusText.left
                anchors.rightMargin: Theme.unit
                anchors.verticalCenter: parent.verticalCenter
                text: root.message ? "" : root.text
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.text
                elide: Text.ElideRight
                maximumLineCount: 1
                Accessible.ignored: true
            }
            Text {
                id: statusText

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: root.status
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.secondary
                Accessible.ignored: true
            }
        }
    }
}
