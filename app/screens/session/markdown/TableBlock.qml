// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui

/// A table as wide as its cells need; it is read aloud row by row.
Rectangle {
    id: root

    required property string html
    required property string plain
    required property var tableRows

    signal linkActivated(string address)

    height: scroller.height + 2 * Theme.groupPadding
    radius: Theme.codeRadius
    color: Theme.tinted(Theme.secondary, 6)
    Accessible.role: Accessible.Table
    Accessible.name: qsTr("Table")

    SideScroller {
        id: scroller

        x: Theme.groupPadding
        y: Theme.groupPadding
        width: root.width - 2 * Theme.groupPadding
        contentWidth: Math.max(width, cells.width)
        contentHeight: cells.height

        RichText {
            id: cells

            width: implicitWidth
            html: root.html
            plain: root.plain
            wrapMode: TextEdit.NoWrap
            Accessible.ignored: true
            onLinkActivated: link => root.linkActivated(link)
        }
        Repeater {
            model: root.tableRows

            Item {
                required property string modelData
                required property int index

                y: index * cells.height / root.tableRows.length
                width: scroller.width
                height: cells.height / root.tableRows.length
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData
            }
        }
    }
}
