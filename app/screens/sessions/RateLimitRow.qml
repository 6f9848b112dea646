// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui
import Varnel.Screens

/// The one window of the token limit that is known; a press tells when it begins anew.
T.AbstractButton {
    id: root

    required property LimitsState limits

    implicitHeight: block.height + 2 * Theme.cardPadding
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: limits.spoken
    Accessible.description: qsTr("Shows when the token limit resets")
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.tinted(Theme.accent, root.down ? 10 : root.hovered ? 5 : 0)
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
    // qmllint disable deferred-property-id
    contentItem: Item {
        Column {
            id: block

            x: Theme.cardPadding
            y: Theme.cardPadding
            width: root.width - 2 * Theme.cardPadding
            spacing: 6

            Item {
                width: block.width
                height: Math.max(mark.height, titleText.height)

                SymbolText {
                    id: mark

                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "gauge.with.dots.needle.33percent"
                    color: Theme.secondary
                }
                Text {
                    id: titleText

                    anchors.left: mark.right
                    anchors.leftMargin: Theme.unit
                    anchors.right: leftText.left
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.limits.title
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
                    text: root.limits.percentText
                    textFormat: Text.PlainText
                    font: Theme.caption
                    color: Theme.secondary
                    Accessible.ignored: true
                }
            }
            LimitBar {
                width: block.width
                percent: root.limits.percentLeft
                tone: Theme.tone(root.limits.tone)
            }
        }
    }
    // qmllint enable deferred-property-id
}
