// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui
import Varnel.Screens

/// Segments, one chosen. The arrow keys move between them.
Rectangle {
    id: root

    required property PendingRequestCardState card

    height: Theme.touchTarget
    radius: Theme.groupRadius
    color: Theme.page
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Approval scope")

    Row {
        id: segments

        anchors.fill: parent

        Repeater {
            id: repeater

            model: root.card.scopes

            T.RadioButton {
                id: segment

                required property int index
                required property var modelData
                readonly property bool chosen: root.card.selectedDecision === modelData.decision

                width: root.width / repeater.count
                height: root.height
                text: modelData.label
                checked: chosen
                Accessible.name: text
                Accessible.onPressAction: clicked()
                Accessible.onToggleAction: clicked()
                Keys.onReturnPressed: segment.clicked()
                Keys.onLeftPressed: repeater.itemAt(Math.max(0, index - 1)).forceActiveFocus(Qt.TabFocusReason)
                Keys.onRightPressed: repeater.itemAt(Math.min(repeater.count - 1, index + 1)).forceActiveFocus(Qt.TabFocusReason)
                onClicked: root.card.selectedDecision = modelData.decision

                background: Item {
                    Rectangle {
                        anchors.fill: parent
                        anchors.margins: 3
                        radius: Theme.codeRadius
                        color: segment.chosen ? Theme.surface : "transparent"
                        border.width: segment.visualFocus ? 2 : segment.chosen ? 1 : 0
                        border.color: segment.visualFocus ? Theme.accent : Theme.hairline
                    }
                }
                contentItem: Text {
                    text: segment.text
                    textFormat: Text.PlainText
                    font: Theme.subheadlineMedium
                    color: segment.chosen ? Theme.text : Theme.secondary
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    Accessible.ignored: true
                }
            }
        }
    }
}
