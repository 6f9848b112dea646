// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui
import Varnel.Screens

/// The connection and the token limits, on one card above the list.
Rectangle {
    id: root

    required property SessionsViewState sessions

    signal resetAsked

    implicitHeight: column.height
    radius: Theme.cardRadius
    color: Theme.surface

    Column {
        id: column

        width: root.width

        ConnectionRow {
            width: column.width
            connection: root.sessions.connection
        }
        Rectangle {
            x: Theme.cardPadding
            width: column.width - x
            height: 1
            color: Theme.hairline
        }
        T.AbstractButton {
            id: usageButton

            width: column.width
            height: summary.height + 2 * Theme.cardPadding
            visible: root.sessions.limits.hasUsage
            focusPolicy: Qt.StrongFocus
            Accessible.role: Accessible.Button
            Accessible.name: root.sessions.limits.summary
            Accessible.description: qsTr("Shows the usage")
            Accessible.onPressAction: clicked()
            Keys.onReturnPressed: usageButton.clicked()
            Keys.onEnterPressed: usageButton.clicked()
            onClicked: root.sessions.showingUsage = true

            background: Rectangle {
                radius: Theme.cardRadius
                color: Theme.tinted(Theme.accent, usageButton.down ? 10 : usageButton.hovered ? 5 : 0)
                border.width: usageButton.visualFocus ? 2 : 0
                border.color: Theme.accent
            }

            UsageLimitsSummary {
                id: summary

                x: Theme.cardPadding
                y: Theme.cardPadding
                width: parent.width - 2 * Theme.cardPadding
                limits: root.sessions.limits.rows
            }
            Text {
                x: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                visible: summary.height === 0
                text: qsTr("Usage")
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.text
                Accessible.ignored: true
            }
        }
        RateLimitRow {
            width: column.width
            visible: root.sessions.limits.hasWindow
            limits: root.sessions.limits
            onClicked: root.resetAsked()
        }
        Item {
            width: column.width
            height: Theme.touchTarget
            visible: !root.sessions.limits.hasUsage && !root.sessions.limits.hasWindow
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("Token limit")

            SymbolText {
                anchors.left: parent.left
                anchors.leftMargin: Theme.cardPadding + 1
                anchors.verticalCenter: parent.verticalCenter
                symbol: "gauge.with.dots.needle.33percent"
                color: Theme.secondary
            }
            Text {
                anchors.left: parent.left
                anchors.leftMargin: Theme.cardPadding + 26 + Theme.unit
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Token limit")
                textFormat: Text.PlainText
                font: Theme.subheadline
                color: Theme.secondary
                Accessible.ignored: true
            }
            Spinner {
                anchors.right: parent.right
                anchors.rightMargin: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                size: 16
            }
        }
    }
}
