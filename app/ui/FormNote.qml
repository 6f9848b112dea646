// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// A sentence in a form: an explanation, or with a symbol a warning.
Item {
    id: root

    required property string text
    property string symbol: ""
    property color tone: Theme.secondary

    width: parent ? parent.width : 0
    height: words.height + 2 * Theme.cardPadding
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    RowHairline {}
    SymbolText {
        id: mark

        anchors.left: parent.left
        anchors.leftMargin: Theme.cardPadding
        y: Theme.cardPadding
        visible: root.symbol.length > 0
        symbol: root.symbol
        size: 20
        color: root.tone
    }
    Text {
        id: words

        anchors.left: mark.visible ? mark.right : parent.left
        anchors.leftMargin: mark.visible ? Theme.unit : Theme.cardPadding
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        y: Theme.cardPadding
        text: root.text
        textFormat: Text.PlainText
        font: Theme.footnote
        color: root.tone
        lineHeight: Theme.readingLeading
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
