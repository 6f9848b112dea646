// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The questions, each with its options as buttons that fill the one reply field.
Column {
    id: root

    required property PendingRequestCardState card

    spacing: Theme.cardPadding

    Repeater {
        model: root.card.questions

        Column {
            id: question

            required property var modelData

            width: root.width
            spacing: Theme.half

            Label {
                visible: text.length > 0
                width: question.width
                text: question.modelData.header
                font: Theme.captionBold
                color: Theme.secondary
            }
            Label {
                visible: text.length > 0
                width: question.width
                text: question.modelData.question
                font: Theme.body
                lineHeight: Theme.readingLeading
            }
            Repeater {
                model: question.modelData.options

                OptionButton {
                    id: option

                    required property var modelData

                    width: question.width
                    text: modelData.shown
                    description: modelData.description
                    chosen: root.card.answer === modelData.label
                    onClicked: root.card.answer = option.modelData.label
                }
            }
        }
    }
    Label {
        visible: text.length > 0
        width: root.width
        text: root.card.sharedReply
        font: Theme.footnote
        color: Theme.secondary
    }
}
