// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui
import Varnel.Screens

/// The plan: where the agent stands in it, and unfolded every step.
Rectangle {
    id: root

    required property PlanCardState plan

    signal aboutToUnfold

    height: column.height
    radius: Theme.cardRadius
    color: Theme.tinted(Theme.accent, 8)

    Column {
        id: column

        width: root.width

        Disclosure {
            width: column.width
            symbol: "list.bullet.clipboard"
            label: root.plan.title
            labelFont: Theme.headline
            tone: Theme.accent
            trailing: root.plan.progress
            description: root.plan.spoken
            expanded: root.plan.expanded
            onClicked: {
                root.aboutToUnfold();
                root.plan.expanded = !root.plan.expanded;
            }
        }
        Item {
            width: column.width
            height: 3 + (root.plan.expanded ? Theme.half : Theme.cardPadding)

            Rectangle {
                x: Theme.cardPadding
                width: parent.width - 2 * Theme.cardPadding
                height: 3
                radius: 1.5
                color: Theme.tinted(Theme.accent, 24)

                Rectangle {
                    width: parent.width * root.plan.done
                    height: parent.height
                    radius: parent.radius
                    color: Theme.accent
                }
            }
        }
        Column {
            x: Theme.cardPadding
            width: column.width - 2 * Theme.cardPadding
            visible: root.plan.expanded
            topPadding: Theme.half
            bottomPadding: Theme.cardPadding
            spacing: Theme.unit

            Text {
                visible: text.length > 0
                width: parent.width
                text: root.plan.explanation
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.secondary
                lineHeight: Theme.readingLeading
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Repeater {
                model: root.plan.expanded ? root.plan.steps : []

                Item {
                    id: step

                    required property var modelData

                    width: parent.width
                    height: Math.max(mark.height, words.height)
                    Accessible.role: Accessible.StaticText
                    Accessible.name: words.text + ", " + step.modelData.status

                    SymbolText {
                        id: mark

                        symbol: step.modelData.symbol
                        size: 20
                        color: Theme.tone(step.modelData.tone)
                    }
                    Text {
                        id: words

                        x: mark.width + Theme.unit
                        width: step.width - x
                        text: step.modelData.text
                        textFormat: Text.PlainText
                        font: Theme.subheadline
                        color: Theme.text
                        lineHeight: Theme.labelLeading
                        wrapMode: Text.Wrap
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
