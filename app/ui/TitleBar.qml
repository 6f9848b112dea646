// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick

/// The bar on top of a page: its title, a way back where there is one, and what the page puts to the right.
Rectangle {
    id: root

    required property string title
    property bool canGoBack: false
    default property alias trailing: trailingRow.data
    /// What stands under the title, across the bar.
    property alias below: belowArea.data
    property real barHeight: Theme.touchTarget + Theme.unit

    signal backRequested

    implicitHeight: barHeight + (belowArea.children.length > 0 ? belowArea.height + Theme.unit : 0)
    color: Theme.surface

    SymbolButton {
        id: backButton

        anchors.left: parent.left
        anchors.leftMargin: Theme.half
        y: (root.barHeight - height) / 2
        visible: root.canGoBack
        symbol: "chevron.left"
        label: qsTr("Back")
        onClicked: root.backRequested()
    }
    Text {
        anchors.left: root.canGoBack ? backButton.right : parent.left
        anchors.right: trailingRow.left
        anchors.leftMargin: root.canGoBack ? Theme.half : Theme.margin
        anchors.rightMargin: Theme.unit
        y: (root.barHeight - height) / 2
        text: root.title
        textFormat: Text.PlainText
        font: Theme.title2
        color: Theme.text
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Row {
        id: trailingRow

        anchors.right: parent.right
        anchors.rightMargin: Theme.unit
        y: (root.barHeight - height) / 2
        spacing: Theme.half
    }
    Item {
        id: belowArea

        x: Theme.margin
        y: root.barHeight
        width: root.width - 2 * x
        height: childrenRect.height
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.hairline
    }
}
