// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: a ListView of Qt 6.4 silently drops a bound header or footer.
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The home screen: the connection and the limits, then the conversations in the bridge's order, or what a search found.
FocusScope {
    id: root

    required property SessionsViewState sessions

    function focusSearch(): void {
        searchField.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    TitleBar {
        id: bar

        width: parent.width
        title: qsTr("Varnel")
        below: SearchField {
            id: searchField

            width: parent.width
            text: root.sessions.search.text
            onTextChanged: root.sessions.search.text = text
        }

        SymbolButton {
            symbol: "arrow.clockwise"
            label: qsTr("Refresh")
            busy: root.sessions.refreshing
            onClicked: root.sessions.refresh()
        }
        SymbolButton {
            symbol: "archivebox"
            label: qsTr("Archived conversations")
            onClicked: root.sessions.showingArchived = true
        }
    }

    ListView {
        id: list

        property bool atTop: true
        readonly property real pulled: dragging && contentY < originY - topMargin ? originY - topMargin - contentY : 0

        function keepTop(): void {
            if (atTop)
                positionViewAtBeginning();
        }

        anchors.fill: parent
        anchors.topMargin: bar.height
        visible: !root.sessions.search.shown
        clip: true
        leftMargin: Theme.margin
        rightMargin: Theme.margin
        bottomMargin: Theme.margin
        focus: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.DragOverBounds
        currentIndex: -1
        model: root.sessions.rows
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Conversations")
        Keys.onTabPressed: event => event.accepted = false
        onActiveFocusChanged: if (activeFocus && currentIndex < 0 && count > 0)
            currentIndex = 0
        onMovementEnded: atTop = atYBeginning
        onDragEnded: if (contentY < originY - topMargin - 64)
            root.sessions.refresh()
        onCountChanged: settle.restart()
        onHeaderItemChanged: settle.restart()
        onOriginYChanged: settle.restart()

        // qmllint disable unqualified
        header: Column {
            width: list.width - 2 * Theme.margin
            topPadding: Theme.margin
            bottomPadding: Theme.unit
            spacing: Theme.margin

            StatusSection {
                width: parent.width
                sessions: root.sessions
                onResetAsked: resetAlert.tell(root.sessions.limits.resetMessage)
            }
            FormSection {
                width: parent.width
                visible: root.sessions.saved

                FormNote {
                    text: qsTr("This is what was saved on this device. It is brought up to date as soon as your host is reached.")
                    symbol: "clock"
                }
            }
            SectionTitle {
                visible: list.count > 0
                width: parent.width
                text: qsTr("Active and recent")
            }
            EmptyState {
                width: parent.width
                topPadding: 48
                visible: root.sessions.empty
                symbol: "terminal"
                title: qsTr("No Codex sessions")
                description: qsTr("Start Codex with the varnel command or create a session here.")
            }
        }
        delegate: SessionRow {
            required property int index

            width: list.width - 2 * Theme.margin
            actions: root.sessions.actions
            firstRow: index === 0
            lastRow: index === list.count - 1
            selected: sessionId === root.sessions.openId
            onMenuRequested: rowMenu.showFor(this)
            onClicked: {
                list.currentIndex = index;
                root.sessions.open(sessionId);
            }
        }
        // qmllint enable unqualified
        ScrollBar.vertical: ScrollBar {}

        Timer {
            id: settle

            interval: 0
            onTriggered: list.keepTop()
        }
    }
    Spinner {
        anchors.horizontalCenter: parent.horizontalCenter
        y: bar.height + Theme.unit
        visible: list.visible && list.pulled > 16
        opacity: Math.min(1, list.pulled / 64)
        running: list.pulled > 64
    }
    SearchResults {
        anchors.fill: list
        visible: root.sessions.search.shown
        sessions: root.sessions
        onResetAsked: resetAlert.tell(root.sessions.limits.resetMessage)
    }
    Spinner {
        anchors.centerIn: parent
        visible: root.sessions.loading && !root.sessions.search.shown
        size: 32
        Accessible.role: Accessible.Animation
        Accessible.name: qsTr("Loading conversations")
    }
    UndoBar {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: Theme.margin
        text: qsTr("Archived")
        shown: root.sessions.actions.undoShown
        onUndone: root.sessions.actions.undoArchive()
    }
    RowMenu {
        id: rowMenu
    }
    MessageDialog {
        id: resetAlert

        title: qsTr("Token limit reset")
    }
    RenameSessionDialog {
        actions: root.sessions.actions
    }
}
