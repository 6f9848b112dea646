// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// A field to search with: a glass in front, and a cross that empties it behind.
T.TextField {
    id: root

    /// It lies on a bar or a card, not on the page.
    property bool surfaceBehind: true

    implicitHeight: Math.max(Theme.touchTarget, contentHeight + topPadding + bottomPadding)
    leftPadding: 40
    rightPadding: clear.visible ? Theme.touchTarget : Theme.cardPadding
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    placeholderText: qsTr("Search")
    placeholderTextColor: Theme.secondary
    verticalAlignment: TextInput.AlignVCenter
    inputMethodHints: Qt.ImhNoPredictiveText
    Accessible.name: placeholderText
    Keys.onEscapePressed: event => {
        event.accepted = root.length > 0;
        root.clear();
    }

    background: Rectangle {
        radius: Theme.groupRadius
        color: root.surfaceBehind ? Theme.page : Theme.surface
        border.width: root.activeFocus ? 2 : 0
        border.color: Theme.accent
    }

    SymbolText {
        anchors.left: parent.left
        anchors.leftMargin: Theme.groupPadding
        anchors.verticalCenter: parent.verticalCenter
        symbol: "magnifyingglass"
        size: 20
        color: Theme.secondary
    }
    Text {
        anchors.left: parent.left
        anchors.leftMargin: root.leftPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height
        visible: root.length === 0 && root.preeditText.length === 0
        text: root.placeholderText
        textFormat: Text.PlainText
        font: root.font
        color: root.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    SymbolButton {
        id: clear

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        visible: root.length > 0
        focusPolicy: Qt.NoFocus
        symbol: "xmark"
        label: qsTr("Clear search")
        tone: Theme.secondary
        onClicked: root.clear()
    }
}
