// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// One row of a form: a label on the left, its value on the right, or under it when both do not fit on a line.
Item {
    id: root

    required property string label
    property string value: ""
    readonly property bool stacked: labelText.implicitWidth + valueText.implicitWidth + Theme.margin > width - 2 * Theme.cardPadding

    width: parent ? parent.width : 0
    height: Math.max(Theme.touchTarget + Theme.half, texts.height + 2 * Theme.cardPadding)
    Accessible.role: Accessible.StaticText
    Accessible.name: value.length > 0 ? label + ": " + value : label

    RowHairline {}
    Item {
        id: texts

        x: Theme.cardPadding
        anchors.verticalCenter: parent.verticalCenter
        width: root.width - 2 * x
        height: root.stacked ? valueText.y + valueText.height : Math.max(labelText.height, valueText.height)

        Text {
            id: labelText

            anchors.left: parent.left
            width: root.stacked ? parent.width : implicitWidth
            text: root.label
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.text
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Text {
            id: valueText

            anchors.left: parent.left
            anchors.right: parent.right
            y: root.stacked ? labelText.height + Theme.half : 0
            horizontalAlignment: root.stacked ? Text.AlignLeft : Text.AlignRight
            text: root.value
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.secondary
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            Accessible.ignored: true
        }
    }
}
