// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: a ListView of Qt 6.4 silently drops a bound header or footer.
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The archived conversations, and over them the one that is read.
Sheet {
    id: root

    required property ArchivedSessionsViewState archived

    title: qsTr("Archived")
    doneText: qsTr("Done")
    doneLeading: true
    tall: true
    onOpened: archived.appeared()
    onClosed: {
        archived.disappeared();
        searchField.clear();
    }

    SearchField {
        id: searchField

        width: parent.width
        surfaceBehind: false
        onTextChanged: root.archived.search = text
    }
    ListView {
        id: list

        anchors.fill: parent
        anchors.topMargin: searchField.height + Theme.cardPadding
        clip: true
        activeFocusOnTab: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.archived.rows
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Archived conversations")

        // qmllint disable unqualified
        delegate: ArchivedRow {
            required property int index

            width: list.width
            archived: root.archived
            firstRow: index === 0
            lastRow: index === list.count - 1
            onMenuRequested: rowMenu.showFor(this)
            onClicked: root.archived.open(sessionId)
        }
        footer: Item {
            width: list.width
            height: more.visible ? more.height + Theme.unit : 0

            Button {
                id: more

                y: Theme.unit
                width: parent.width
                visible: root.archived.hasMore && !root.archived.empty
                text: qsTr("Load more")
                onClicked: root.archived.loadMore()
            }
        }
        // qmllint enable unqualified
        ScrollBar.vertical: ScrollBar {}
    }
    EmptyState {
        anchors.centerIn: list
        width: Math.min(360, parent.width)
        visible: root.archived.empty
        symbol: "archivebox"
        title: qsTr("No archived conversations")
    }
    Spinner {
        anchors.centerIn: list
        visible: root.archived.loading
        size: 32
        Accessible.role: Accessible.Animation
        Accessible.name: qsTr("Loading archived conversations")
    }
    // qmllint disable unqualified
    Repeater {
        model: root.archived.session ? [root.archived.session] : []

        SessionView {
            required property SessionViewState modelData

            x: -root.leftPadding
            y: -root.topPadding
            width: root.width
            height: root.height - root.header.height
            focus: true
            session: modelData
            canGoBack: true
            onBackRequested: root.archived.close()
        }
    }
    // qmllint enable unqualified
    RowMenu {
        id: rowMenu
    }
}
