// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// The line of a group that unfolds: symbol, label, what stands at the right, chevron.
T.AbstractButton {
    id: root

    required property string symbol
    required property string label
    required property bool expanded
    property string trailing
    property string description: label
    property color tone: Theme.secondary
    property font labelFont: Theme.subheadline

    implicitHeight: Math.max(Theme.touchTarget, labelText.height + 2 * Theme.unit)
    Accessible.role: Accessible.Button
    Accessible.name: description
    Accessible.checkable: true
    Accessible.checked: expanded
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        radius: Theme.groupRadius
        color: root.tone
        opacity: root.down ? 0.1 : root.hovered ? 0.05 : 0
    }
    contentItem: Item { // qmllint disable deferred-property-id
        SymbolText {
            id: symbolText

            x: Theme.groupPadding
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.symbol
            size: 20
            color: root.tone
        }
        Text {
            id: labelText

            anchors.left: symbolText.right
            anchors.leftMargin: Theme.unit
            anchors.right: trailingText.left
            anchors.rightMargin: Theme.unit
            anchors.verticalCenter: parent.verticalCenter
            text: root.label
            textFormat: Text.PlainText
            font: root.labelFont
            color: Theme.text
            elide: Text.ElideRight
            maximumLineCount: root.expanded ? 4 : 1
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        // As wide as its own digits could get, so that the label stays where it is while they change.
        Text {
            id: trailingText

            anchors.right: chevron.left
            anchors.rightMargin: root.trailing.length > 0 ? Theme.unit : 0
            anchors.verticalCenter: parent.verticalCenter
            width: root.trailing.length > 0 ? widest.width : 0
            text: root.trailing
            textFormat: Text.PlainText
            font: Theme.caption
            color: Theme.secondary
            horizontalAlignment: Text.AlignRight
            Accessible.ignored: true
        }
        TextMetrics {
            id: widest

            font: Theme.caption
            text: root.trailing.replace(/[0-9]/g, "0")
        }
        SymbolText {
            id: chevron

            anchors.right: parent.right
            anchors.rightMargin: Theme.groupPadding
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.down"
            size: 20
            color: Theme.secondary
            rotation: root.expanded ? 180 : 0
            Behavior on rotation {
                enabled: !Theme.reducedMotion
                NumberAnimation {
                    duration: 180
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.groupRadius
        color: "transparent"
        border.width: root.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
}
