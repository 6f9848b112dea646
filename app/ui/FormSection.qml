// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// A titled card of rows, as forms are made of.
Column {
    id: root

    property string title: ""
    default property alias rows: column.data

    spacing: Theme.unit

    Text {
        x: Theme.cardPadding
        width: root.width - 2 * x
        visible: text.length > 0
        text: root.title
        textFormat: Text.PlainText
        font: Theme.captionBold
        color: Theme.secondary
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Rectangle {
        width: root.width
        height: column.height
        radius: Theme.cardRadius
        color: Theme.surface

        Column {
            id: column

            width: parent.width
        }
    }
}
