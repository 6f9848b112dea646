// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Varnel.Ui

/// One thing the agent did: its title, how it stands, and its details as far as they fit.
Item {
    id: root

    required property var modelData
    required property int index
    required property bool isLast

    height: column.height + (isLast ? Theme.groupPadding : 2 * Theme.groupPadding)

    Column {
        id: column

        width: root.width
        spacing: 5

        Item {
            width: column.width
            height: Math.max(title.height, status.height)

            Text {
                id: title

                anchors.left: parent.left
                anchors.right: status.left
                anchors.rightMargin: Theme.unit
                text: root.modelData.title
                textFormat: Text.PlainText
                font: Theme.subheadlineMedium
                color: Theme.text
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Text {
                id: status

                anchors.right: parent.right
                anchors.baseline: title.baseline
                text: root.modelData.status
                textFormat: Text.PlainText
                font: Theme.caption
                color: Theme.secondary
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                Accessible.ignored: text.length === 0
            }
        }
        LedgerText {
            visible: root.modelData.diff.length > 0
            width: column.width
            text: visible ? diffStyle.sheet + root.modelData.diff : ""
            textFormat: TextEdit.RichText
            wrapMode: TextEdit.NoWrap
        }
        LedgerText {
            visible: root.modelData.detail.length > 0
            width: column.width
            text: root.modelData.detail
        }
    }
    DiffStyle {
        id: diffStyle
    }
    Rectangle {
        visible: !root.isLast
        y: column.height + Theme.groupPadding - 1
        width: root.width
        height: 1
        color: Theme.hairline
    }
}
