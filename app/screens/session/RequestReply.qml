// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The one field that answers a question.
Column {
    id: root

    required property PendingRequestCardState card

    spacing: Theme.unit

    TextField {
        id: field

        width: root.width
        placeholderText: qsTr("Reply")
        text: root.card.answer
        onTextChanged: root.card.answer = text
    }
    DecisionButton {
        anchors.right: parent.right
        text: qsTr("Send answer")
        highlighted: true
        enabled: root.card.sendEnabled
        busy: root.card.underWay === PendingRequestCardState.Send
        onClicked: {
            InputMethod.commit();
            root.card.sendAnswer();
        }
    }
}
