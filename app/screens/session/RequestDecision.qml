// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// What an approval is good for where there is a choice, and the two decisions: declining first.
Column {
    id: root

    required property PendingRequestCardState card

    spacing: Theme.cardPadding

    ScopePicker {
        visible: root.card.scopes.length > 0
        width: root.width
        card: root.card
    }
    Row {
        width: root.width
        spacing: Theme.cardPadding

        DecisionButton {
            width: (root.width - Theme.cardPadding) / 2
            text: qsTr("Decline")
            palette.buttonText: Theme.red
            enabled: root.card.decideEnabled
            busy: root.card.underWay === PendingRequestCardState.Decline
            onClicked: root.card.decline()
        }
        DecisionButton {
            width: (root.width - Theme.cardPadding) / 2
            text: qsTr("Approve")
            highlighted: true
            enabled: root.card.decideEnabled
            busy: root.card.underWay === PendingRequestCardState.Approve
            onClicked: root.card.approve()
        }
    }
}
