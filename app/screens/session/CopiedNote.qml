// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import Varnel.Ui

/// A word that something was copied, gone by itself.
Rectangle {
    id: root

    function show(): void {
        appear.restart();
    }

    width: words.width + 2 * Theme.margin
    height: words.height + Theme.margin
    radius: height / 2
    color: Theme.text
    opacity: 0
    visible: opacity > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: words.text

    Text {
        id: words

        anchors.centerIn: parent
        text: qsTr("Copied")
        textFormat: Text.PlainText
        font: Theme.footnote
        color: Theme.page
        Accessible.ignored: true
    }
    SequentialAnimation {
        id: appear

        NumberAnimation {
            target: root
            property: "opacity"
            to: 1
            duration: Theme.appearDuration
        }
        PauseAnimation {
            duration: 1200
        }
        NumberAnimation {
            target: root
            property: "opacity"
            to: 0
            duration: Theme.appearDuration
        }
    }
}
