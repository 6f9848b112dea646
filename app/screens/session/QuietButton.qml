// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// A small symbol that stays in the background until it is wanted; as large under the finger as every other button.
T.AbstractButton {
    id: root

    required property string symbol
    required property string label
    readonly property real excess: (Theme.touchTarget - 24) / 2

    implicitWidth: Theme.touchTarget
    implicitHeight: 24
    Accessible.role: checkable ? Accessible.CheckBox : Accessible.Button
    Accessible.name: label
    Accessible.checkable: checkable
    Accessible.checked: checked
    Accessible.onPressAction: act()
    Accessible.onToggleAction: act()
    Keys.onReturnPressed: act()
    Keys.onEnterPressed: act()
    topInset: -excess
    bottomInset: -excess

    function act(): void {
        if (!enabled)
            return;
        if (checkable) {
            toggle();
            toggled();
        }
        clicked();
    }

    containmentMask: QtObject {
        function contains(point: point): bool {
            return point.x >= 0 && point.x <= root.width && point.y >= -root.excess && point.y <= root.height + root.excess;
        }
    }
    background: Item {
        Rectangle {
            anchors.centerIn: parent
            width: 32
            height: 32
            radius: Theme.unit
            color: Theme.tinted(Theme.secondary, root.down ? 24 : 14)
            visible: root.hovered || root.down || root.visualFocus || root.checked
            border.width: root.visualFocus ? 2 : 0
            border.color: Theme.accent
        }
    }
    contentItem: Item {
        SymbolText {
            anchors.centerIn: parent
            symbol: root.symbol
            size: 18
            color: root.checked ? Theme.accent : Theme.secondary
        }
    }
}
