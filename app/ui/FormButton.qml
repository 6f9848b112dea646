// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T

/// A row of a form that does something: plain words in its tone, or a label with the value that a press changes.
T.AbstractButton {
    id: root

    property color tone: Theme.accent
    property string value: ""
    property bool opens: false

    width: parent ? parent.width : 0
    implicitHeight: Math.max(Theme.touchTarget + Theme.half, texts.height + 2 * Theme.cardPadding)
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: value.length > 0 ? text + ": " + value : text
    Accessible.readOnly: !enabled
    Accessible.onPressAction: if (enabled)
        clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        radius: Theme.cardRadius
        color: "transparent"
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.accent

        RowHairline {
            visible: root.y > 0 && !root.visualFocus
        }
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.accent
            opacity: root.down ? 0.1 : root.hovered ? 0.05 : 0
        }
    }
    // qmllint disable deferred-property-id
    contentItem: Item {
        id: content

        readonly property real room: width - 2 * Theme.cardPadding - (chevron.visible ? chevron.width : 0)
        readonly property bool stacked: labelText.implicitWidth + valueText.implicitWidth + Theme.margin > room

        Item {
            id: texts

            anchors.left: parent.left
            anchors.leftMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            width: content.room
            height: content.stacked && root.value.length > 0 ? valueText.y + valueText.height : Math.max(labelText.height, valueText.height)

            Text {
                id: labelText

                anchors.left: parent.left
                width: Math.min(implicitWidth, parent.width)
                text: root.text
                textFormat: Text.PlainText
                font: Theme.body
                color: !root.enabled ? Theme.secondary : root.tone
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
            Text {
                id: valueText

                anchors.left: parent.left
                anchors.right: parent.right
                y: content.stacked ? labelText.height + Theme.half : 0
                horizontalAlignment: content.stacked ? Text.AlignLeft : Text.AlignRight
                text: root.value
                textFormat: Text.PlainText
                font: Theme.body
                color: Theme.secondary
                wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                Accessible.ignored: true
            }
        }
        SymbolText {
            id: chevron

            anchors.right: parent.right
            anchors.rightMargin: Theme.half
            anchors.verticalCenter: parent.verticalCenter
            visible: root.opens
            symbol: "chevron.right"
            color: Theme.secondary
        }
    }
    // qmllint enable deferred-property-id
}
