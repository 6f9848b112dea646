// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// The tabs along the bottom: a symbol with its word each, the current one in the accent colour.
Rectangle {
    id: root

    required property list<string> labels
    required property list<string> symbols
    required property int currentIndex

    signal picked(index: int)

    implicitHeight: 56
    color: Theme.surface
    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Tabs")

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }
    Row {
        anchors.fill: parent

        Repeater {
            id: repeater

            model: root.labels

            T.TabButton {
                id: tab

                required property int index
                required property string modelData
                readonly property bool current: index === root.currentIndex
                readonly property color tone: current ? Theme.accent : Theme.secondary

                width: root.width / repeater.count
                height: root.height
                focusPolicy: Qt.TabFocus
                checked: current
                text: modelData
                Accessible.role: Accessible.PageTab
                Accessible.name: text
                Accessible.selected: current
                Accessible.onPressAction: clicked()
                Keys.onReturnPressed: tab.clicked()
                Keys.onLeftPressed: repeater.itemAt(Math.max(0, index - 1)).forceActiveFocus(Qt.TabFocusReason)
                Keys.onRightPressed: repeater.itemAt(Math.min(repeater.count - 1, index + 1)).forceActiveFocus(Qt.TabFocusReason)
                onClicked: root.picked(index)

                background: Rectangle {
                    anchors.fill: parent
                    anchors.margins: Theme.half
                    radius: Theme.groupRadius
                    color: Theme.tinted(Theme.accent, tab.down ? 10 : tab.hovered ? 5 : 0)
                    border.width: tab.visualFocus ? 2 : 0
                    border.color: Theme.accent
                }
                contentItem: Item {
                    Column {
                        anchors.centerIn: parent
                        spacing: 2

                        SymbolText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            symbol: root.symbols[tab.index]
                            color: tab.tone
                        }
                        Text {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: tab.text
                            textFormat: Text.PlainText
                            font: Theme.caption
                            color: tab.tone
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
    }
}
