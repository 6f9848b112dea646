// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// The actions that a swiped row bares.
Item {
    id: root

    required property var actions
    required property real tileWidth

    signal done

    clip: true

    Row {
        Repeater {
            model: root.actions

            T.AbstractButton {
                id: tile

                required property SwipeAction modelData

                width: root.tileWidth
                height: root.height
                enabled: modelData.enabled
                text: modelData.text
                Accessible.role: Accessible.Button
                Accessible.name: text
                Accessible.readOnly: !enabled
                Accessible.onPressAction: if (enabled)
                    clicked()
                onClicked: {
                    root.done();
                    tile.modelData.trigger(tile);
                }

                background: Rectangle {
                    color: tile.enabled ? Theme.tone(tile.modelData.tone) : Theme.tinted(Theme.secondary, 20)
                    opacity: tile.down ? 0.8 : 1
                }
                contentItem: Item {
                    clip: true

                    Column {
                        anchors.centerIn: parent
                        spacing: Theme.half

                        SymbolText {
                            anchors.horizontalCenter: parent.horizontalCenter
                            symbol: tile.modelData.symbol
                            color: tile.enabled ? Theme.accentText : Theme.secondary
                        }
                        Text {
                            anchors.horizontalCenter: parent.horizontalCenter
                            text: tile.text
                            textFormat: Text.PlainText
                            font: Theme.caption
                            color: tile.enabled ? Theme.accentText : Theme.secondary
                            Accessible.ignored: true
                        }
                    }
                }
            }
        }
    }
}
