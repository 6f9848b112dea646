// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import Qt.labs.qmlmodels
import Varnel.Ui
import Varnel.Screens

/// A whole text of markdown: its blocks below each other, each drawn by the delegate of its kind.
Column {
    id: root

    required property string source

    signal linkActivated(string address)
    signal copyRequested(string text)

    spacing: 10

    Repeater {
        model: MarkdownBlocks {
            source: root.source
            linkColor: Theme.accent
            codeBackground: Theme.tinted(Theme.secondary, 14)
            hairline: Theme.tinted(Theme.secondary, 45)
            codeFamily: Theme.codeFamily
            leading: Theme.readingLeading
        }
        delegate: DelegateChooser {
            role: "kind"

            DelegateChoice {
                roleValue: "paragraph"
                RichText {
                    width: root.width
                    onLinkActivated: link => root.linkActivated(link)
                }
            }
            DelegateChoice {
                roleValue: "heading"
                HeadingBlock {
                    width: root.width
                    onLinkActivated: link => root.linkActivated(link)
                }
            }
            DelegateChoice {
                roleValue: "list"
                ListBlock {
                    width: root.width
                    onLinkActivated: address => root.linkActivated(address)
                }
            }
            DelegateChoice {
                roleValue: "code"
                CodeBlock {
                    width: root.width
                    onCopyRequested: text => root.copyRequested(text)
                }
            }
            DelegateChoice {
                roleValue: "quote"
                QuoteBlock {
                    width: root.width
                    onLinkActivated: address => root.linkActivated(address)
                }
            }
            DelegateChoice {
                roleValue: "table"
                TableBlock {
                    width: root.width
                    onLinkActivated: address => root.linkActivated(address)
                }
            }
            DelegateChoice {
                roleValue: "rule"
                Item {
                    width: root.width
                    height: 9

                    Rectangle {
                        anchors.verticalCenter: parent.verticalCenter
                        width: parent.width
                        height: 1
                        color: Theme.tinted(Theme.secondary, 45)
                    }
                }
            }
        }
    }
}
