// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui

/// Bullets or numbers. The markers are for the eye alone.
Column {
    id: root

    required property var items

    signal linkActivated(string address)

    spacing: 6

    Repeater {
        model: root.items

        Item {
            id: item

            required property var modelData

            width: root.width
            height: Math.max(marker.height, words.height)

            Text {
                id: marker

                x: item.modelData.indent * 16
                width: Math.max(implicitWidth, 12)
                text: item.modelData.marker
                textFormat: Text.PlainText
                font: Theme.body
                lineHeight: Theme.readingLeading
                color: Theme.secondary
                Accessible.ignored: true
            }
            RichText {
                id: words

                x: marker.x + marker.width + 7
                width: root.width - x
                html: item.modelData.html
                plain: item.modelData.plain
                onLinkActivated: link => root.linkActivated(link)
            }
        }
    }
}
