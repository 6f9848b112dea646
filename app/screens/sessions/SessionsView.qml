// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: a ListView of Qt 6.4 silently drops a bound header or footer.
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The home screen: the connection, then the conversations in the bridge's order.
FocusScope {
    id: root

    required property SessionsViewState sessions

    TitleBar {
        id: bar

        width: parent.width
        title: qsTr("Varnel")

        SymbolButton {
            symbol: "arrow.clockwise"
            label: qsTr("Refresh")
            busy: root.sessions.refreshing
            onClicked: root.sessions.refresh()
        }
    }

    ListView {
        id: list

        property bool atTop: true

        function keepTop(): void {
            if (atTop)
                positionViewAtBeginning();
        }

        anchors.fill: parent
        anchors.topMargin: bar.height
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
        onCountChanged: settle.restart()
        onHeaderItemChanged: settle.restart()
        onOriginYChanged: settle.restart()

        // qmllint disable unqualified
        header: Column {
            width: list.width - 2 * Theme.margin
            topPadding: Theme.margin
            bottomPadding: Theme.unit
            spacing: Theme.margin

            ConnectionCard {
                width: parent.width
                sessions: root.sessions
            }
            Text {
                visible: list.count > 0
                width: parent.width
                leftPadding: Theme.cardPadding
                text: qsTr("Active and recent")
                textFormat: Text.PlainText
                font: Theme.captionBold
                color: Theme.secondary
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
        }
        delegate: SessionDelegate {
            width: list.width - 2 * Theme.margin
            lastRow: index === list.count - 1
            selected: sessionId === root.sessions.openId
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
    EmptyState {
        anchors.centerIn: parent
        width: Math.min(360, root.width - 2 * 32)
        visible: root.sessions.empty
        symbol: "terminal"
        title: qsTr("No Codex sessions")
        description: qsTr("Start Codex with the varnel command or create a session here.")
    }
    Spinner {
        anchors.centerIn: parent
        visible: root.sessions.loading
        size: 32
        Accessible.role: Accessible.Animation
        Accessible.name: qsTr("Loading conversations")
    }
}
