// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// One conversation that the search found.
ItemDelegate {
    id: root

    required property string title
    required property string snippet
    required property bool archived
    required property string spoken
    property bool firstRow: false
    property bool lastRow: false

    text: spoken
    implicitHeight: Math.max(Theme.touchTarget, column.height + 2 * padding)

    background: CardSlice {
        firstRow: root.firstRow
        lastRow: root.lastRow
        pressed: root.down
        hovered: root.hovered
        focused: root.visualFocus
    }
    // qmllint disable deferred-property-id
    contentItem: Item {
        Column {
            id: column

            width: parent.width
            spacing: Theme.half

            Item {
                width: column.width
                height: titleText.height

                Text {
                    id: titleText

                    width: Math.min(implicitWidth, parent.width - (root.archived ? mark.width + Theme.unit : 0))
                    text: root.title
                    textFormat: Text.PlainText
                    font: Theme.headline
                    color: Theme.text
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                Row {
                    id: mark

                    anchors.left: titleText.right
                    anchors.leftMargin: Theme.unit
                    anchors.verticalCenter: titleText.verticalCenter
                    visible: root.archived
                    spacing: Theme.half

                    SymbolText {
                        symbol: "archivebox"
                        size: 14
                        color: Theme.secondary
                    }
                    Text {
                        text: qsTr("Archived")
                        textFormat: Text.PlainText
                        font: Theme.caption
                        color: Theme.secondary
                        Accessible.ignored: true
                    }
                }
            }
            Text {
                width: column.width
                visible: text.length > 0
                text: root.snippet
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.secondary
                lineHeight: Theme.labelLeading
                wrapMode: Text.Wrap
                elide: Text.ElideRight
                maximumLineCount: 3
                Accessible.ignored: true
            }
        }
    }
    // qmllint enable deferred-property-id
}
