// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// A card in the middle of the window: title, content, and in the footer what the user puts there. Never taller than
/// the window; content that may be long scrolls by itself.
T.Dialog {
    id: control

    readonly property Item room: T.Overlay.overlay

    anchors.centerIn: T.Overlay.overlay
    width: Math.min(480, room ? room.width - 2 * Theme.margin : 480)
    height: room ? Math.min(implicitHeight, room.height - 2 * Theme.margin) : implicitHeight
    implicitHeight: implicitContentHeight + topPadding + bottomPadding + implicitHeaderHeight + implicitFooterHeight
    padding: 20
    topPadding: Theme.unit
    modal: true
    focus: true

    header: Text {
        leftPadding: 20
        rightPadding: 20
        topPadding: 20
        text: control.title
        textFormat: Text.PlainText
        font: Theme.headline
        color: Theme.text
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.hairline
    }
    T.Overlay.modal: Rectangle {
        color: Theme.dim
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.appearDuration
            easing.type: Easing.OutCubic
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            from: 1
            to: 0
            duration: Theme.appearDuration
        }
    }
}
