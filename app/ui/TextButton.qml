// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T

/// Words alone that do something.
T.AbstractButton {
    id: root

    property color tone: Theme.accent
    property bool strong: true

    implicitWidth: Math.ceil(Math.max(Theme.touchTarget, words.implicitWidth + 2 * Theme.cardPadding))
    implicitHeight: Math.max(Theme.touchTarget, words.implicitHeight)
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.readOnly: !enabled
    Accessible.onPressAction: if (enabled)
        clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        radius: Theme.groupRadius
        color: "transparent"
        border.width: root.visualFocus ? 2 : 0
        border.color: root.tone

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: root.tone
            opacity: root.down ? 0.16 : root.hovered ? 0.08 : 0
        }
    }
    // qmllint disable deferred-property-id
    contentItem: Text {
        id: words

        text: root.text
        textFormat: Text.PlainText
        font: root.strong ? Theme.headline : Theme.body
        color: root.enabled ? root.tone : Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    // qmllint enable deferred-property-id
}
