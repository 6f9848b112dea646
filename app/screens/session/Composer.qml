// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The bar at the bottom of a conversation: what waits in line, what is attached, the text, and one button that sends
/// or stops.
Rectangle {
    id: root

    required property SessionViewState session
    readonly property ComposerState composer: session.composer
    readonly property real side: Math.max(Theme.unit, (width - Theme.contentWidth) / 2)

    signal pickRequested
    signal settingsRequested

    /// A word that is still being composed is part of the message.
    function takeComposed(): void {
        InputMethod.commit();
    }
    function focusField(): void {
        field.forceActiveFocus();
    }

    implicitHeight: column.height + 2 * Theme.unit
    color: Theme.surface

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.hairline
    }
    Column {
        id: column

        x: root.side
        y: Theme.unit
        width: root.width - 2 * root.side
        spacing: Theme.unit

        QueueList {
            width: column.width
            composer: root.composer
        }
        Button {
            visible: root.session.dictation.canTranscribeAgain
            flat: true
            text: qsTr("Transcribe again")
            onClicked: root.session.dictation.transcribeAgain()
        }
        AttachmentCapsules {
            width: column.width
            composer: root.composer
        }
        Item {
            width: column.width
            height: Math.max(frame.height, Theme.touchTarget)

            SymbolButton {
                id: attachButton

                anchors.bottom: parent.bottom
                symbol: "plus.circle"
                label: qsTr("Attach image or video")
                onClicked: root.pickRequested()
            }
            Rectangle {
                id: frame

                anchors.left: attachButton.right
                anchors.leftMargin: Theme.half
                anchors.right: dictationButton.left
                anchors.rightMargin: Theme.half
                anchors.bottom: parent.bottom
                height: Math.max(Theme.touchTarget, flick.height)
                radius: Theme.fieldRadius
                color: Theme.page
                border.width: field.activeFocus ? 2 : 1
                border.color: field.activeFocus ? Theme.accent : Theme.hairline

                Flickable {
                    id: flick

                    anchors.left: parent.left
                    anchors.right: settingsButton.left
                    anchors.verticalCenter: parent.verticalCenter
                    height: Math.min(field.implicitHeight, 6 * metrics.lineSpacing + field.topPadding + field.bottomPadding)
                    contentWidth: width
                    clip: true
                    boundsBehavior: Flickable.StopAtBounds

                    TextArea.flickable: TextArea {
                        id: field

                        rightPadding: 0
                        placeholderText: qsTr("Message Codex")
                        text: root.composer.message
                        onTextChanged: root.composer.message = text
                        onPreeditTextChanged: root.composer.preedit = preeditText
                        Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
                        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
                        Keys.onPressed: event => {
                            if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && event.modifiers & Qt.ControlModifier) {
                                root.takeComposed();
                                root.composer.send();
                                event.accepted = true;
                            } else if (event.matches(StandardKey.Paste)) {
                                event.accepted = root.composer.paste();
                            }
                        }
                    }
                    ScrollBar.vertical: ScrollBar {}
                }
                SymbolButton {
                    id: settingsButton

                    anchors.right: parent.right
                    anchors.bottom: parent.bottom
                    symbol: "slider.horizontal.3"
                    label: qsTr("Conversation settings")
                    tone: Theme.secondary
                    onClicked: root.settingsRequested()
                }
                FontMetrics {
                    id: metrics

                    font: field.font
                }
            }
            DictationButton {
                id: dictationButton

                anchors.right: queueButton.left
                anchors.bottom: parent.bottom
                dictation: root.session.dictation
            }
            SymbolButton {
                id: queueButton

                anchors.right: sendButton.left
                anchors.rightMargin: visible ? Theme.half : 0
                anchors.bottom: parent.bottom
                width: visible ? Theme.touchTarget : 0
                visible: root.composer.canQueue
                symbol: "clock.arrow.up"
                label: qsTr("Send when done")
                onClicked: {
                    root.takeComposed();
                    root.composer.sendWhenDone();
                }
            }
            SymbolButton {
                id: sendButton

                anchors.right: parent.right
                anchors.bottom: parent.bottom
                highlighted: true
                symbol: root.composer.sendSymbol
                label: root.composer.sendLabel
                busy: root.composer.busy
                enabled: root.composer.sendEnabled
                onClicked: {
                    root.takeComposed();
                    root.composer.sendOrStop();
                }
            }
        }
    }
}
