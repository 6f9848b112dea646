// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui
import Varnel.Screens

/// The list, and the open conversation: beside it on a wide window, over it on a phone.
FocusScope {
    id: root

    required property ShellState shell
    readonly property bool wide: width >= Theme.wideFrom
    readonly property bool conversationOpen: shell.session !== null
    /// 0: the list fills a narrow window, 1: the conversation does.
    property real push: conversationOpen ? 1 : 0

    Behavior on push {
        enabled: root.conversationOpen && !root.wide
        NumberAnimation {
            duration: Theme.pushDuration
            easing.type: Easing.OutCubic
        }
    }
    Shortcut {
        sequences: ["Escape", "Back"]
        enabled: root.conversationOpen && !root.wide
        onActivated: root.shell.sessions.close()
    }
    Shortcut {
        sequence: "F5"
        onActivated: root.shell.sessions.refresh()
    }

    SessionsView {
        width: root.wide ? Theme.listWidth : root.width
        height: root.height
        visible: root.wide || root.push < 1
        focus: !root.conversationOpen
        sessions: root.shell.sessions
    }
    Rectangle {
        x: Theme.listWidth
        width: 1
        height: root.height
        visible: root.wide
        color: Theme.hairline
    }
    Item {
        id: pane

        x: root.wide ? Theme.listWidth + 1 : root.width * (1 - root.push)
        width: root.wide ? root.width - x : root.width
        height: root.height
        visible: root.wide || root.conversationOpen

        Rectangle {
            anchors.fill: parent
            color: Theme.page
        }
        Repeater {
            model: root.shell.session ? [root.shell.session] : []

            SessionView {
                required property SessionViewState modelData

                width: pane.width
                height: pane.height
                focus: true
                session: modelData
                canGoBack: !root.wide
                onBackRequested: root.shell.sessions.close()
            }
        }
        EmptyState {
            anchors.centerIn: parent
            width: Math.min(360, pane.width - 2 * 32)
            visible: !root.conversationOpen
            symbol: "bubble.left.and.text.bubble.right"
            title: qsTr("No conversation selected")
        }
    }
}
