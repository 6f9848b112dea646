// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// Says that a request waits where it cannot be seen, and leads there. It answers nothing.
T.AbstractButton {
    id: root

    implicitHeight: Theme.touchTarget
    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Codex needs input")
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        color: Theme.tinted(Theme.orange, root.down || root.hovered ? 18 : 12)
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: Theme.unit

            SymbolText {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "exclamationmark.bubble.fill"
                size: 20
                color: Theme.orange
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Codex needs input")
                textFormat: Text.PlainText
                font: Theme.subheadlineMedium
                color: Theme.orange
                Accessible.ignored: true
            }
            SymbolText {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "arrow.up"
                size: 18
                color: Theme.orange
            }
        }
    }
}
