// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import Varnel.Ui

/// Words with their styles, to be read, selected by a pointer and copied. A finger moves the page instead; where links
/// lead is asked before anything is opened.
TextEdit {
    id: root

    required property string html
    required property string plain

    text: html
    textFormat: TextEdit.RichText
    wrapMode: TextEdit.Wrap
    readOnly: true
    selectByMouse: hover.hovered
    activeFocusOnPress: hover.hovered
    font: Theme.body
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentText
    Accessible.role: Accessible.StaticText
    Accessible.name: plain
    Accessible.readOnly: true
    onActiveFocusChanged: if (!activeFocus)
        deselect()

    HoverHandler {
        id: hover

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        cursorShape: root.hoveredLink.length > 0 ? Qt.PointingHandCursor : Qt.IBeamCursor
    }
}
