// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// Says for a while what was done, and takes it back.
Rectangle {
    id: root

    required property string text
    required property bool shown

    signal undone

    implicitHeight: Theme.touchTarget + Theme.unit
    visible: opacity > 0
    opacity: shown ? 1 : 0
    radius: Theme.cardRadius
    color: Theme.text
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.appearDuration
        }
    }

    Text {
        anchors.left: parent.left
        anchors.leftMargin: Theme.margin
        anchors.right: undoButton.left
        anchors.verticalCenter: parent.verticalCenter
        text: root.text
        textFormat: Text.PlainText
        font: Theme.subheadline
        color: Theme.surface
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    TextButton {
        id: undoButton

        anchors.right: parent.right
        anchors.rightMargin: Theme.half
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("Undo")
        tone: Theme.dark ? "#3A5CCC" : "#90A8FF"
        onClicked: root.undone()
    }
}
