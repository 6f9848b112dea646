// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: a ListView of Qt 6.4 silently drops a bound header or footer.
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// What stands in the place of the list while there is text in the search field.
ListView {
    id: root

    required property SessionsViewState sessions
    readonly property ConversationSearch search: sessions.search

    signal resetAsked

    clip: true
    leftMargin: Theme.margin
    rightMargin: Theme.margin
    bottomMargin: Theme.margin
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    model: search.searching ? null : search.rows
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Search results")

    // qmllint disable unqualified
    header: Column {
        width: root.width - 2 * Theme.margin
        topPadding: Theme.margin
        bottomPadding: Theme.unit
        spacing: Theme.margin

        StatusSection {
            width: parent.width
            sessions: root.sessions
            onResetAsked: root.resetAsked()
        }
        SectionTitle {
            width: parent.width
            text: qsTr("Search results")
        }
        Rectangle {
            width: parent.width
            height: 64
            visible: root.search.searching
            radius: Theme.cardRadius
            color: Theme.surface

            Spinner {
                anchors.centerIn: parent
                Accessible.role: Accessible.Animation
                Accessible.name: qsTr("Searching")
            }
        }
        EmptyState {
            width: parent.width
            topPadding: 24
            visible: !root.search.searching && root.search.empty
            symbol: "magnifyingglass"
            title: root.search.emptyTitle
        }
    }
    delegate: SearchResultRow {
        required property int index

        width: root.width - 2 * Theme.margin
        firstRow: index === 0
        lastRow: index === root.count - 1
        onClicked: root.search.open(index)
    }
    footer: Item {
        width: root.width - 2 * Theme.margin
        height: more.visible ? more.height + Theme.unit : 0

        Button {
            id: more

            y: Theme.unit
            width: parent.width
            visible: root.search.hasMore && !root.search.searching && !root.search.empty
            text: qsTr("Load more results")
            onClicked: root.search.loadMore()
        }
    }
    // qmllint enable unqualified
    ScrollBar.vertical: ScrollBar {}
}
