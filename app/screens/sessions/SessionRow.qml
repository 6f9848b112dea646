// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui
import Varnel.Screens

/// One conversation in the list.
SwipeRow {
    id: root

    required property SessionActions actions
    required property string sessionId
    required property string project
    required property string commentary
    required property string stateWord
    required property string stateSymbol
    required property string stateTone
    required property string when
    required property bool pinned
    required property bool live
    required property bool active
    required property bool unread
    required property string draft
    required property string spoken

    text: spoken
    hairlineInset: Theme.cardPadding + 26 + Theme.unit
    leadingFull: true
    leading: [
        SwipeAction {
            text: root.pinned ? qsTr("Unpin") : qsTr("Pin")
            symbol: root.pinned ? "pin.slash" : "pin"
            tone: "indigo"
            onTriggered: root.actions.pin(root.sessionId)
        }
    ]
    trailing: [
        SwipeAction {
            text: qsTr("Rename")
            symbol: "pencil"
            tone: "blue"
            onTriggered: root.actions.startRename(root.sessionId)
        },
        SwipeAction {
            text: qsTr("Archive")
            symbol: "archivebox"
            tone: "red"
            enabled: !root.active
            onTriggered: root.actions.archive(root.sessionId)
        }
    ]

    // qmllint disable deferred-property-id
    contentItem: Item {
        id: content

        implicitHeight: words.height
        transform: Translate {
            x: root.offset
        }

        SymbolText {
            id: stateIcon

            anchors.left: parent.left
            width: 26
            symbol: root.stateSymbol
            color: Theme.tone(root.stateTone)
        }
        Rectangle {
            anchors.horizontalCenter: stateIcon.horizontalCenter
            anchors.top: stateIcon.bottom
            anchors.topMargin: Theme.unit
            width: 8
            height: 8
            radius: 4
            visible: root.unread
            color: Theme.accent
        }
        Column {
            id: words

            anchors.left: stateIcon.right
            anchors.leftMargin: Theme.unit
            anchors.right: parent.right
            spacing: Theme.half

            Item {
                width: words.width
                height: projectText.height

                Text {
                    id: projectText

                    anchors.left: parent.left
                    width: Math.min(implicitWidth, parent.width - marks.width - whenText.width - Theme.unit)
                    text: root.project
                    textFormat: Text.PlainText
                    font: Theme.headline
                    color: Theme.text
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    Accessible.ignored: true
                }
                Text {
                    id: whenText

                    anchors.right: parent.right
                    anchors.baseline: projectText.baseline
                    text: root.when
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: Theme.secondary
                    Accessible.ignored: true
                }
                Row {
                    id: marks

                    anchors.left: projectText.right
                    anchors.verticalCenter: projectText.verticalCenter
                    leftPadding: Theme.half
                    spacing: Theme.half

                    SymbolText {
                        visible: root.pinned
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: "pin.fill"
                        size: 14
                        color: Theme.indigo
                    }
                    Text {
                        visible: root.live
                        anchors.verticalCenter: parent.verticalCenter
                        text: qsTr("LIVE")
                        textFormat: Text.PlainText
                        font: Theme.caption2Bold
                        color: Theme.secondary
                        Accessible.ignored: true
                    }
                }
            }
            Item {
                width: words.width
                height: Math.max(commentaryText.height, aside.y + aside.height)

                Text {
                    id: commentaryText

                    anchors.left: parent.left
                    width: parent.width - aside.width - Theme.cardPadding
                    text: root.commentary
                    textFormat: Text.PlainText
                    font: Theme.subheadline
                    color: Theme.secondary
                    lineHeight: Theme.labelLeading
                    wrapMode: Text.Wrap
                    elide: Text.ElideRight
                    maximumLineCount: 2
                    Accessible.ignored: true
                }
                Text {
                    id: aside

                    anchors.right: parent.right
                    y: 2
                    text: root.stateWord
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: Theme.tone(root.stateTone)
                    Accessible.ignored: true
                }
            }
            Text {
                width: words.width
                visible: text.length > 0
                text: root.draft.length > 0 ? qsTr("Draft: %1").arg(root.draft) : ""
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.orange
                elide: Text.ElideRight
                maximumLineCount: 1
                Accessible.ignored: true
            }
        }
    }
    // qmllint enable deferred-property-id
}
