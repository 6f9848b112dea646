// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The bar at the bottom of a conversation: the text, and one button that sends or stops.
Rectangle {
    id: root

    required property SessionViewState session
    readonly property real side: Math.max(Theme.cardPadding, (width - Theme.contentWidth) / 2)

    /// A word that is still being composed is part of the message.
    function takeComposed(): void {
        InputMethod.commit();
    }

    implicitHeight: Math.max(frame.height, sendButton.height) + 2 * Theme.unit
    color: Theme.surface

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }
    Rectangle {
        id: frame

        anchors.left: parent.left
        anchors.leftMargin: root.side
        anchors.right: sendButton.left
        anchors.rightMargin: Theme.unit
        anchors.verticalCenter: parent.verticalCenter
        height: Math.max(Theme.touchTarget, flick.height)
        radius: Theme.fieldRadius
        color: Theme.page
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.accent : Theme.hairline

        Flickable {
            id: flick

            width: parent.width
            height: Math.min(field.implicitHeight, 6 * metrics.lineSpacing + field.topPadding + field.bottomPadding)
            anchors.verticalCenter: parent.verticalCenter
            contentWidth: width
            clip: true
            boundsBehavior: Flickable.StopAtBounds

            TextArea.flickable: TextArea {
                id: field

                placeholderText: qsTr("Message Codex")
                text: root.session.message
                onTextChanged: root.session.message = text
                Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
                Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
                Keys.onPressed: event => {
                    if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && event.modifiers & Qt.ControlModifier) {
                        root.takeComposed();
                        root.session.send();
                        event.accepted = true;
                    }
                }
            }
            ScrollBar.vertical: ScrollBar {}
        }
        FontMetrics {
            id: metrics

            font: field.font
        }
    }
    SymbolButton {
        id: sendButton

        anchors.right: parent.right
        anchors.rightMargin: root.side
        anchors.bottom: frame.bottom
        highlighted: true
        symbol: root.session.sendSymbol
        label: root.session.sendLabel
        busy: root.session.busy
        enabled: root.session.sendEnabled
        onClicked: {
            root.takeComposed();
            root.session.sendOrStop();
        }
    }
}
