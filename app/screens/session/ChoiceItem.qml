// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// An entry of a menu: a symbol where it has one, its words, and at the right a check mark or what it leads to. Its
/// words never are markup.
T.MenuItem {
    id: control

    property string symbol
    /// An entry that only informs.
    property bool quiet: false

    implicitWidth: Math.ceil(words.implicitWidth) + words.x + 44
    implicitHeight: Math.max(quiet ? 32 : Theme.touchTarget, words.implicitHeight + Theme.unit)
    font: quiet ? Theme.footnote : Theme.body
    Accessible.name: text
    Accessible.readOnly: !enabled
    Accessible.onPressAction: if (enabled)
        control.clicked()
    Accessible.onToggleAction: if (enabled)
        control.clicked()

    contentItem: Item { // qmllint disable deferred-property-id
        SymbolText {
            x: Theme.margin
            anchors.verticalCenter: parent.verticalCenter
            visible: control.symbol.length > 0
            symbol: control.symbol.length > 0 ? control.symbol : "circle"
            size: 20
            color: control.enabled ? Theme.accent : Theme.secondary
        }
        Text {
            id: words

            x: control.symbol.length > 0 ? 48 : Theme.margin
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, control.width - x - 44)
            text: control.text
            textFormat: Text.PlainText
            font: control.font
            color: control.enabled && !control.quiet ? Theme.text : Theme.secondary
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        SymbolText {
            anchors.right: parent.right
            anchors.rightMargin: Theme.cardPadding
            anchors.verticalCenter: parent.verticalCenter
            visible: control.subMenu || control.checked
            symbol: control.subMenu ? "chevron.right" : "checkmark"
            size: 20
            color: control.subMenu ? Theme.secondary : Theme.accent
        }
    }
    background: Rectangle {
        x: Theme.half
        width: control.width - 2 * x
        radius: Theme.codeRadius
        color: control.enabled && (control.highlighted || control.down || control.hovered) ? Theme.tinted(Theme.accent, 10) : "transparent"
        border.width: control.visualFocus ? 2 : 0
        border.color: Theme.accent
    }
}
