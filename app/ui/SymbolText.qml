// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import Varnel.Ui

/// One symbol of the icon font, drawn in a square of `size`. Decoration: whoever shows it says in words what it means.
Text {
    id: root

    required property string symbol
    property real size: 24

    width: size
    height: size
    text: Symbols.glyph(symbol)
    textFormat: Text.PlainText
    color: Theme.text
    font.family: Symbols.family
    font.pixelSize: size
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
