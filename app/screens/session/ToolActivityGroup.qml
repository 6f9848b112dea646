// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui

/// What the agent did between two messages: one line, and unfolded a ledger of it.
Rectangle {
    id: root

    required property string rowId
    required property int index
    required property string text
    required property bool expanded
    required property var entries

    signal toggled(string rowId)

    height: column.height
    radius: Theme.groupRadius
    color: Theme.tinted(Theme.secondary, 6)
    Component.onCompleted: ReadingOrder.place(root, ListView.view?.itemAtIndex(index - 1) ?? null, ListView.view?.itemAtIndex(index + 1) ?? null)
    Accessible.role: Accessible.ListItem
    Accessible.name: text

    Column {
        id: column

        width: root.width

        Disclosure {
            width: column.width
            symbol: "wrench.and.screwdriver"
            label: root.text
            expanded: root.expanded
            onClicked: root.toggled(root.rowId)
        }
        Repeater {
            model: root.entries

            ToolEntryView {
                id: entry

                x: Theme.groupPadding
                width: column.width - 2 * Theme.groupPadding
                isLast: entry.index === root.entries.length - 1
            }
        }
    }
}
