// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// A menu as wide as its longest entry, and never wider or higher than the window.
Menu {
    id: root

    property string symbol
    readonly property real widest: {
        let result = 200;
        for (let i = 0; i < count; ++i)
            result = Math.max(result, itemAt(i)?.implicitWidth ?? 0);
        return result;
    }

    width: Math.min(widest + leftPadding + rightPadding, parent?.Window.width - 2 * Theme.unit)
    height: Math.min(implicitHeight, parent?.Window.height - 2 * Theme.unit)
    margins: Theme.unit
    cascade: false
    modal: true
    dim: false
    verticalPadding: Theme.half
    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.hairline
    }
    delegate: ChoiceItem {
        symbol: subMenu?.symbol ?? ""
    }
}
