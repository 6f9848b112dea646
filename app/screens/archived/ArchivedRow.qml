// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui
import Varnel.Screens

/// One archived conversation.
SwipeRow {
    id: root

    required property ArchivedSessionsViewState archived
    required property string sessionId
    required property string title
    required property string date
    required property string spoken

    text: spoken
    trailingFull: true
    trailing: [
        SwipeAction {
            text: qsTr("Unarchive")
            symbol: "arrow.uturn.backward"
            tone: "blue"
            onTriggered: root.archived.unarchive(root.sessionId)
        }
    ]

    // qmllint disable deferred-property-id
    contentItem: Item {
        implicitHeight: words.height
        transform: Translate {
            x: root.offset
        }

        Column {
            id: words

            width: parent.width
            spacing: Theme.half

            Text {
                width: words.width
                text: root.title
                textFormat: Text.PlainText
                font: Theme.headline
                color: Theme.text
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Text {
                width: words.width
                visible: text.length > 0
                text: root.date
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.secondary
                Accessible.ignored: true
            }
        }
    }
    // qmllint enable deferred-property-id
}
