// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// Says that the agent waits for an answer, and what for.
Rectangle {
    id: root

    required property string method

    height: strip.height + column.height + 2 * Theme.cardPadding
    radius: Theme.cardRadius
    color: Theme.surface
    border.width: 1
    border.color: Theme.orange
    clip: true
    Accessible.role: Accessible.AlertMessage
    Accessible.name: qsTr("Codex needs input") + ", " + method

    Rectangle {
        id: strip

        width: parent.width
        height: heading.height + 2 * Theme.unit
        radius: Theme.cardRadius
        color: Theme.tinted(Theme.orange, 14)
        border.width: 1
        border.color: Theme.orange

        SymbolText {
            id: symbol

            x: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            symbol: "exclamationmark.bubble.fill"
            size: 20
            color: Theme.orange
        }
        Label {
            id: heading

            anchors.left: symbol.right
            anchors.leftMargin: Theme.unit
            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Codex needs input")
            font: Theme.headline
            color: Theme.orange
        }
    }
    Column {
        id: column

        x: Theme.cardPadding
        y: strip.height + Theme.cardPadding
        width: root.width - 2 * Theme.cardPadding
        spacing: Theme.half

        Label {
            width: column.width
            text: root.method
            font: Theme.subheadline
            wrapMode: Text.WrapAnywhere
        }
        Label {
            width: column.width
            text: qsTr("The task waits for an answer. Answers cannot be given here yet: give this one on the host.")
            font: Theme.footnote
            color: Theme.secondary
            lineHeight: Theme.readingLeading
        }
    }
}
