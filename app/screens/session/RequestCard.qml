// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// A request of the agent: what it wants to do first, and only behind that the buttons that answer it.
Rectangle {
    id: root

    required property PendingRequestCardState card
    /// How far below the top of the view it stands.
    required property real place

    signal aboutToUnfold

    onPlaceChanged: card.disturb()
    onHeightChanged: card.disturb()
    height: column.y + column.height + Theme.cardPadding
    radius: Theme.cardRadius
    color: Theme.surface
    border.width: 1
    border.color: Theme.orange
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Codex needs input") + (card.position.length > 0 ? ", " + card.position : "")

    Rectangle {
        id: strip

        x: 1
        y: 1
        width: root.width - 2
        height: heading.height + 2 * Theme.groupPadding
        radius: Theme.cardRadius - 1
        color: Theme.tinted(Theme.orange, 12)

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Theme.cardRadius
            color: parent.color
        }
        SymbolText {
            id: symbol

            x: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            symbol: "exclamationmark.bubble.fill"
            size: 22
            color: Theme.orange
        }
        Label {
            id: heading

            anchors.left: symbol.right
            anchors.leftMargin: Theme.unit
            anchors.right: counter.left
            anchors.rightMargin: Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Codex needs input")
            font: Theme.headline
            color: Theme.orange
        }
        Label {
            id: counter

            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            text: root.card.position
            font: Theme.caption
            color: Theme.secondary
            Accessible.ignored: text.length === 0
        }
    }
    Column {
        id: column

        x: Theme.cardPadding
        y: strip.height + Theme.cardPadding
        width: root.width - 2 * Theme.cardPadding
        spacing: Theme.unit

        Label {
            width: column.width
            text: root.card.method
            font: Theme.subheadline
            color: Theme.secondary
            wrapMode: Text.WrapAnywhere
        }
        RequestQuestions {
            visible: root.card.question
            width: column.width
            card: root.card
        }
        RequestDetails {
            width: column.width
            card: root.card
            onAboutToUnfold: root.aboutToUnfold()
        }
        Label {
            visible: !root.card.showingDetail
            width: column.width
            text: qsTr("Review the full request before responding.")
            font: Theme.footnote
            color: Theme.secondary
        }
        RequestReply {
            visible: root.card.question
            width: column.width
            card: root.card
        }
        RequestDecision {
            visible: !root.card.question
            width: column.width
            card: root.card
        }
    }
}
