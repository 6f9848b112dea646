// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// A round button of 44 with a symbol alone; `label` is its name for those who do not see it. Filled when
/// `highlighted`. While `busy` it shows progress in the symbol's place.
T.Button {
    id: root

    required property string symbol
    required property string label
    property bool busy: false
    property color tone: Theme.accent

    implicitWidth: Theme.touchTarget
    implicitHeight: Theme.touchTarget
    Accessible.name: label
    Accessible.readOnly: !enabled
    Accessible.onPressAction: if (enabled)
        clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    background: Rectangle {
        radius: height / 2
        color: root.highlighted ? root.tone : "transparent"
        opacity: root.enabled || !root.highlighted ? 1 : 0.4
        border.width: root.visualFocus ? 2 : 0
        border.color: root.highlighted ? Theme.text : Theme.accent

        Rectangle {
            anchors.fill: parent
            radius: height / 2
            color: root.highlighted ? Theme.accentText : root.tone
            opacity: root.down ? 0.16 : root.hovered ? 0.08 : 0
        }
    }
    contentItem: Item {
        SymbolText {
            anchors.centerIn: parent
            visible: !root.busy
            symbol: root.symbol
            color: root.highlighted ? Theme.accentText : root.enabled ? root.tone : Theme.secondary
            opacity: root.enabled || root.highlighted ? 1 : 0.6
        }
        Spinner {
            anchors.centerIn: parent
            running: root.busy
            visible: root.busy
            color: root.highlighted ? Theme.accentText : root.tone
        }
    }
}
