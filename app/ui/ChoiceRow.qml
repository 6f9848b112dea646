// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T

/// One choice of a list, with a check mark when it is the chosen one. The rows lie on one card.
T.ItemDelegate {
    id: root

    required property bool chosen
    required property bool firstRow
    required property bool lastRow

    implicitHeight: Math.max(Theme.touchTarget + Theme.half, words.height + 2 * Theme.cardPadding)
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.selected: chosen
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: CardSlice {
        firstRow: root.firstRow
        lastRow: root.lastRow
        pressed: root.down
        hovered: root.hovered
        focused: root.visualFocus || root.activeFocus
    }
    // qmllint disable deferred-property-id
    contentItem: Item {
        Text {
            id: words

            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - mark.width - 3 * Theme.cardPadding
            text: root.text
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.text
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            Accessible.ignored: true
        }
        SymbolText {
            id: mark

            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            opacity: root.chosen ? 1 : 0
            symbol: "checkmark"
            color: Theme.accent
        }
    }
    // qmllint enable deferred-property-id
}
