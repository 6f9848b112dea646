// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// One conversation in the list. The rows of a section lie on one card, of which each row draws its part.
ItemDelegate {
    id: root

    required property int index
    required property string sessionId
    required property string project
    required property string commentary
    required property string stateWord
    required property string stateSymbol
    required property string stateTone
    required property string when
    required property bool pinned
    required property bool live
    required property string spoken
    property bool lastRow: false
    property bool selected: false

    implicitHeight: content.height + 2 * padding
    highlighted: selected
    text: spoken
    Accessible.selected: selected

    Item {
        id: content

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        height: words.height

        SymbolText {
            id: stateIcon

            width: 26
            symbol: root.stateSymbol
            color: Theme.tone(root.stateTone)
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

                    width: Math.min(implicitWidth, parent.width - marks.width)
                    text: root.project
                    textFormat: Text.PlainText
                    font: Theme.headline
                    color: Theme.text
                    elide: Text.ElideRight
                    maximumLineCount: 1
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
                Column {
                    id: aside

                    anchors.right: parent.right
                    y: 2
                    spacing: Theme.half

                    Text {
                        anchors.right: parent.right
                        text: root.stateWord
                        textFormat: Text.PlainText
                        font: Theme.caption
                        color: Theme.tone(root.stateTone)
                        Accessible.ignored: true
                    }
                    Text {
                        anchors.right: parent.right
                        text: root.when
                        textFormat: Text.PlainText
                        font: Theme.caption
                        color: Theme.secondary
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
    background: Item {
        clip: true

        Rectangle {
            y: root.index === 0 ? 0 : -radius
            width: parent.width
            height: parent.height - y + (root.lastRow ? 0 : radius)
            radius: Theme.cardRadius
            color: root.selected ? Theme.tinted(Theme.accent, 10) : Theme.surface

            Rectangle {
                anchors.fill: parent
                radius: parent.radius
                color: Theme.accent
                opacity: root.down ? 0.1 : root.hovered ? 0.05 : 0
            }
        }
        Rectangle {
            x: Theme.cardPadding + 26 + Theme.unit
            y: parent.height - 1
            width: parent.width - x
            height: 1
            visible: !root.lastRow
            color: Theme.hairline
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: 1
            visible: root.visualFocus
            radius: Theme.cardRadius
            color: "transparent"
            border.width: 2
            border.color: Theme.accent
        }
    }
}
