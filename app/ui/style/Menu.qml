// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

T.Menu {
    id: control

    implicitWidth: 232
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    margins: Theme.unit
    verticalPadding: Theme.half
    overlap: 1
    delegate: MenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        model: control.contentModel
        interactive: contentHeight > height
        clip: true
        currentIndex: control.currentIndex
    }
    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.hairline
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.appearDuration
        }
    }
    T.Overlay.modal: Rectangle {
        color: Theme.dim
    }
}
