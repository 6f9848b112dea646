// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// What stands where nothing is yet: a symbol, a title and, where there is one, a sentence.
Column {
    id: root

    required property string symbol
    required property string title
    property string description: ""

    spacing: Theme.unit

    SymbolText {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: root.symbol
        size: 48
        color: Theme.secondary
    }
    Text {
        width: root.width
        text: root.title
        textFormat: Text.PlainText
        font: Theme.title3
        color: Theme.text
        lineHeight: Theme.labelLeading
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Text {
        visible: text.length > 0
        width: root.width
        text: root.description
        textFormat: Text.PlainText
        font: Theme.subheadline
        color: Theme.secondary
        lineHeight: Theme.readingLeading
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
