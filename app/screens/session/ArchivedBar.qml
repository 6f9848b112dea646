// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// Stands in the composer's place while the conversation is archived.
Rectangle {
    id: root

    signal unarchiveRequested

    implicitHeight: button.height + 2 * Theme.unit
    color: Theme.surface

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }
    SymbolText {
        id: mark

        x: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        symbol: "archivebox"
        color: Theme.secondary
    }
    Label {
        anchors.left: mark.right
        anchors.leftMargin: Theme.unit
        anchors.right: button.left
        anchors.rightMargin: Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Archived conversation")
        color: Theme.secondary
    }
    Button {
        id: button

        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Unarchive")
        onClicked: root.unarchiveRequested()
    }
}
