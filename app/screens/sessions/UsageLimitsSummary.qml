// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui

/// The windows of the token limit: title, what is left, and a bar each.
Column {
    id: root

    required property var limits

    spacing: Theme.cardPadding

    Repeater {
        model: root.limits

        Column {
            id: block

            required property string title
            required property string percentText
            required property int percentLeft
            required property string tone
            required property string spoken

            width: root.width
            spacing: 6
            Accessible.role: Accessible.StaticText
            Accessible.name: spoken

            Item {
                width: block.width
                height: Math.max(titleText.height, leftText.height)

                Text {
                    id: titleText

                    anchors.left: parent.left
                    width: parent.width - leftText.width - Theme.unit
                    text: block.title
                    textFormat: Text.PlainText
                    font: Theme.subheadline
                    color: Theme.text
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                Text {
                    id: leftText

                    anchors.right: parent.right
                    anchors.baseline: titleText.baseline
                    text: block.percentText
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: Theme.secondary
                    Accessible.ignored: true
                }
            }
            LimitBar {
                width: block.width
                percent: block.percentLeft
                tone: Theme.tone(block.tone)
            }
        }
    }
}
