// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui
import Varnel.Screens

/// The tabs, and the open conversation: beside them on a wide window, over them on a phone.
FocusScope {
    id: root

    required property MainTabViewState tabs
    readonly property bool wide: width >= Theme.wideFrom
    readonly property bool mirrored: Qt.application.layoutDirection === Qt.RightToLeft // qmllint disable type
    readonly property bool conversationOpen: tabs.session !== null
    /// The conversation stands over the tabs.
    readonly property bool covered: conversationOpen && !wide
    /// 0: the tabs fill a narrow window, 1: the conversation does.
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
        enabled: root.covered
        onActivated: root.tabs.sessions.close()
    }
    Shortcut {
        sequence: "F5"
        onActivated: root.tabs.sessions.refresh()
    }
    Shortcut {
        sequence: "Ctrl+K"
        onActivated: switcher.open()
    }
    Shortcut {
        sequence: "Ctrl+N"
        onActivated: root.show(MainTabViewState.New)
    }
    Shortcut {
        sequence: "Ctrl+,"
        onActivated: root.show(MainTabViewState.Settings)
    }
    Shortcut {
        sequence: "Ctrl+F"
        onActivated: {
            root.show(MainTabViewState.Sessions);
            sessionsView.focusSearch();
        }
    }
    Shortcut {
        sequence: "Alt+Up"
        onActivated: root.tabs.sessions.openNeighbour(-1)
    }
    Shortcut {
        sequence: "Alt+Down"
        onActivated: root.tabs.sessions.openNeighbour(1)
    }
    Shortcut {
        sequence: "Alt+A"
        onActivated: root.tabs.sessions.openNextNeedingInput()
    }
    Shortcut {
        sequences: ["Ctrl+?", "Ctrl+Shift+/"]
        onActivated: shortcuts.open()
        // One key press may mean both.
        onActivatedAmbiguously: shortcuts.open()
    }

    function show(tab: int): void {
        if (root.covered)
            root.tabs.sessions.close();
        root.tabs.tab = tab;
    }

    Item {
        id: tabPane

        x: root.mirrored && root.wide ? root.width - width : 0
        width: root.wide ? Theme.listWidth : root.width
        height: root.height
        visible: root.wide || root.push < 1

        SessionsView {
            id: sessionsView

            width: parent.width
            height: strip.y
            visible: root.tabs.tab === MainTabViewState.Sessions
            focus: visible && !root.covered
            sessions: root.tabs.sessions
        }
        NewSessionView {
            width: parent.width
            height: strip.y
            visible: root.tabs.tab === MainTabViewState.New
            focus: visible && !root.covered
            form: root.tabs.newSession
        }
        SettingsView {
            width: parent.width
            height: strip.y
            visible: root.tabs.tab === MainTabViewState.Settings
            focus: visible && !root.covered
            settings: root.tabs.settings
        }
        TabStrip {
            id: strip

            y: parent.height - height
            width: parent.width
            labels: [qsTr("Sessions"), qsTr("New"), qsTr("Settings")]
            symbols: ["bubble.left.and.text.bubble.right", "plus.circle", "gearshape"]
            currentIndex: root.tabs.tab
            onPicked: index => root.tabs.tab = index
        }
    }
    Rectangle {
        x: root.mirrored ? root.width - Theme.listWidth - 1 : Theme.listWidth
        width: 1
        height: root.height
        visible: root.wide
        color: Theme.hairline
    }
    Item {
        id: pane

        x: root.wide ? (root.mirrored ? 0 : Theme.listWidth + 1) : root.width * (1 - root.push) * (root.mirrored ? -1 : 1)
        width: root.wide ? root.width - Theme.listWidth - 1 : root.width
        height: root.height
        visible: root.wide || root.conversationOpen

        Rectangle {
            anchors.fill: parent
            color: Theme.page
        }
        Repeater {
            model: root.tabs.session ? [root.tabs.session] : []

            SessionView {
                required property SessionViewState modelData

                width: pane.width
                height: pane.height
                focus: true
                session: modelData
                canGoBack: !root.wide
                onBackRequested: root.tabs.sessions.close()
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
    UsageDashboardView {
        parent: T.Overlay.overlay
        usage: root.tabs.usage
        visible: root.tabs.sessions.showingUsage
        onClosed: root.tabs.sessions.showingUsage = false
    }
    ArchivedSessionsView {
        parent: T.Overlay.overlay
        archived: root.tabs.archived
        visible: root.tabs.sessions.showingArchived
        onClosed: root.tabs.sessions.showingArchived = false
    }
    QuickSwitcher {
        id: switcher

        parent: T.Overlay.overlay
        switcher: root.tabs.switcher
    }
    ShortcutsWindow {
        id: shortcuts

        parent: T.Overlay.overlay
    }
}
