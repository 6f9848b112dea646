// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// One of several answers, with a word on what it means.
T.RadioButton {
    id: root

    property string description
    required property bool chosen

    checked: chosen
    implicitHeight: Math.max(Theme.touchTarget, words.height + 2 * Theme.unit)
    Accessible.name: description.length > 0 ? text + ", " + description : text
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        radius: Theme.groupRadius
        color: root.chosen ? Theme.tinted(Theme.accent, 10) : "transparent"
        border.width: root.visualFocus ? 2 : 1
        border.color: root.visualFocus || root.chosen ? Theme.accent : Theme.hairline

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.accent
            opacity: root.down ? 0.16 : root.hovered ? 0.06 : 0
        }
    }
    contentItem: Item { // qmllint disable deferred-property-id
        Column {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            x: Theme.cardPadding
            width: parent.width - 2 * Theme.cardPadding - mark.width

            Text {
                width: words.width
                text: root.text
                textFormat: Text.PlainText
                font: Theme.body
                color: root.chosen ? Theme.accent : Theme.text
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            Text {
                visible: text.length > 0
                width: words.width
                text: root.description
                textFormat: Text.PlainText
                font: Theme.footnote
                color: Theme.secondary
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
        SymbolText {
            id: mark

            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            symbol: "checkmark"
            size: 20
            color: Theme.accent
            opacity: root.chosen ? 1 : 0
        }
    }
}
