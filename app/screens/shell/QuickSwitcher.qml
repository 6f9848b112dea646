// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: a ListView of Qt 6.4 silently drops a bound header or footer.
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// Opens a conversation by a few of its letters.
Sheet {
    id: root

    required property QuickSwitcherState switcher

    function choose(row: int): void {
        root.close();
        root.switcher.choose(row);
    }

    title: qsTr("Go to conversation")
    contentHeight: field.height + Theme.cardPadding + Math.min(Math.max(1, list.count), 6) * 48
    // Before it shows: what is typed while it comes up is kept.
    onAboutToShow: {
        field.clear();
        list.currentIndex = 0;
        field.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    SearchField {
        id: field

        width: parent.width
        surfaceBehind: false
        onTextChanged: {
            root.switcher.text = text;
            list.currentIndex = 0;
        }
        onAccepted: root.choose(list.currentIndex)
        Keys.onUpPressed: list.decrementCurrentIndex()
        Keys.onDownPressed: list.incrementCurrentIndex()
    }
    ListView {
        id: list

        anchors.fill: parent
        anchors.topMargin: field.height + Theme.cardPadding
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.switcher.rows
        Accessible.role: Accessible.List
        Accessible.name: root.title
        ScrollBar.vertical: ScrollBar {}

        // qmllint disable unqualified
        delegate: ItemDelegate {
            id: row

            required property int index
            required property string title
            required property string symbol
            required property string tone
            required property string spoken

            width: list.width
            height: 48
            text: spoken
            onClicked: root.choose(index)

            background: CardSlice {
                firstRow: row.index === 0
                lastRow: row.index === list.count - 1
                selected: row.ListView.isCurrentItem
                pressed: row.down
                hovered: row.hovered
                inset: Theme.cardPadding + 32
            }
            // qmllint disable deferred-property-id
            contentItem: Item {
                SymbolText {
                    id: mark

                    anchors.verticalCenter: parent.verticalCenter
                    symbol: row.symbol
                    color: Theme.tone(row.tone)
                }
                Text {
                    anchors.left: mark.right
                    anchors.leftMargin: Theme.unit
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.title
                    textFormat: Text.PlainText
                    font: Theme.body
                    color: Theme.text
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
            }
            // qmllint enable deferred-property-id
        }
        // qmllint enable unqualified
    }
}
