// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import Varnel.Ui

/// A message in its bubble. Its height is known at once, so that the list can be positioned exactly.
Rectangle {
    id: root

    required property string rowId
    required property int index
    required property bool fromUser
    required property string text
    readonly property string author: fromUser ? qsTr("You") : qsTr("Codex")
    /// Quiet until wanted: under a pointer, with the focus in it, or after a long press.
    readonly property bool wanted: hover.hovered || copyButton.visualFocus || againButton.visualFocus || held
    property bool held: false

    signal linkActivated(string address)
    signal copyRequested(string text)
    signal useAgainRequested(string text)

    height: column.height + 2 * Theme.cardPadding
    radius: Theme.cardRadius
    color: fromUser ? Theme.tinted(Theme.accent, 10) : Theme.tinted(Theme.secondary, 8)
    Component.onCompleted: ReadingOrder.place(root, ListView.view?.itemAtIndex(index - 1) ?? null, ListView.view?.itemAtIndex(index + 1) ?? null)
    Accessible.role: Accessible.ListItem
    Accessible.name: text.length > 0 ? author + ": " + text : author

    HoverHandler {
        id: hover

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
    }
    TapHandler {
        acceptedDevices: PointerDevice.TouchScreen | PointerDevice.Stylus
        onLongPressed: root.held = true
        onTapped: root.held = false
    }
    Column {
        id: column

        x: Theme.cardPadding
        y: Theme.cardPadding
        width: root.width - 2 * Theme.cardPadding
        spacing: Theme.half

        Item {
            width: column.width
            height: authorLine.height

            Text {
                id: authorLine

                text: root.author
                textFormat: Text.PlainText
                font: Theme.captionBold
                color: root.fromUser ? Theme.accent : Theme.secondary
                Accessible.ignored: true
            }
            Row {
                anchors.right: parent.right
                anchors.rightMargin: -Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                // Not nothing: what cannot be seen at all does not exist for assistive tools.
                opacity: root.wanted ? 1 : 0.004

                QuietButton {
                    id: againButton

                    visible: root.fromUser
                    symbol: "arrow.uturn.left"
                    label: qsTr("Use again")
                    onClicked: root.useAgainRequested(root.text)
                }
                QuietButton {
                    id: copyButton

                    symbol: "doc.on.doc"
                    label: qsTr("Copy")
                    onClicked: root.copyRequested(root.text)
                }
            }
        }
        MarkdownView {
            visible: root.text.length > 0
            width: column.width
            source: root.text
            onLinkActivated: address => root.linkActivated(address)
            onCopyRequested: text => root.copyRequested(text)
        }
    }
}
