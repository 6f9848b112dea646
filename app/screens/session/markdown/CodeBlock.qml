// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// Code as it was written. It scrolls sideways, or wraps for as long as it is on the screen.
Rectangle {
    id: root

    required property string plain
    required property string language
    property bool wraps: false

    signal copyRequested(string text)

    height: column.height + 2 * Theme.groupPadding
    radius: Theme.codeRadius
    color: Theme.tinted(Theme.secondary, 9)

    Column {
        id: column

        x: Theme.groupPadding
        y: Theme.groupPadding
        width: root.width - 2 * Theme.groupPadding
        spacing: 5

        Item {
            width: column.width
            height: Math.max(label.height, 20)

            Text {
                id: label

                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - tools.width
                text: root.language
                textFormat: Text.PlainText
                font: Theme.caption2Bold
                color: Theme.secondary
                elide: Text.ElideRight
                Accessible.role: Accessible.StaticText
                Accessible.name: text
                Accessible.ignored: text.length === 0
            }
            Row {
                id: tools

                anchors.right: parent.right
                anchors.rightMargin: -Theme.groupPadding
                anchors.verticalCenter: parent.verticalCenter

                QuietButton {
                    symbol: "text.word.spacing"
                    label: qsTr("Wrap lines")
                    checkable: true
                    checked: root.wraps
                    onToggled: root.wraps = checked
                }
                QuietButton {
                    symbol: "doc.on.doc"
                    label: qsTr("Copy code")
                    onClicked: root.copyRequested(root.plain)
                }
            }
        }
        SideScroller {
            width: column.width
            contentWidth: root.wraps ? width : Math.max(width, code.implicitWidth)
            contentHeight: code.height

            RichText {
                id: code

                width: root.wraps ? column.width : implicitWidth
                html: root.plain
                plain: root.plain
                textFormat: TextEdit.PlainText
                wrapMode: root.wraps ? TextEdit.WrapAnywhere : TextEdit.NoWrap
                font: Theme.code
            }
        }
    }
}
