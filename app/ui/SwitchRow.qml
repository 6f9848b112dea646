// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T

/// A row of a form that is on or off. The whole row turns it; `turned` asks for the change, `on` shows what holds.
T.CheckBox {
    id: root

    required property bool on

    signal turned(on: bool)

    width: parent ? parent.width : 0
    implicitHeight: Math.max(Theme.touchTarget + Theme.half, words.height + 2 * Theme.cardPadding)
    focusPolicy: Qt.StrongFocus
    checked: on
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()
    Keys.onReturnPressed: root.clicked()
    onClicked: root.turned(!root.on)

    background: Rectangle {
        radius: Theme.cardRadius
        color: "transparent"
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.accent

        RowHairline {
            visible: root.y > 0 && !root.visualFocus
        }
    }
    // qmllint disable deferred-property-id
    contentItem: Item {
        Text {
            id: words

            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - track.width - 3 * Theme.cardPadding
            text: root.text
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.text
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Rectangle {
            id: track

            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            width: 48
            height: 28
            radius: height / 2
            color: root.on ? Theme.accent : Theme.track

            Rectangle {
                x: root.on ? parent.width - width - 3 : 3
                y: 3
                width: parent.height - 6
                height: width
                radius: width / 2
                color: root.on ? Theme.accentText : Theme.surface

                Behavior on x {
                    enabled: !Theme.reducedMotion
                    NumberAnimation {
                        duration: Theme.appearDuration
                        easing.type: Easing.OutCubic
                    }
                }
            }
        }
    }
    // qmllint enable deferred-property-id
}
