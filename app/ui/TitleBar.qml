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

    signal backRequested

    implicitHeight: Theme.touchTarget + Theme.unit
    color: Theme.surface

    SymbolButton {
        id: backButton

        anchors.left: parent.left
        anchors.leftMargin: Theme.half
        anchors.verticalCenter: parent.verticalCenter
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
        anchors.verticalCenter: parent.verticalCenter
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
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.half
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.hairline
    }
}
