// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// Small monospaced text in a block that is never taller than a part of the screen; the rest of it is scrolled to.
Rectangle {
    id: root

    property alias text: words.text
    property alias textFormat: words.textFormat
    property alias wrapMode: words.wrapMode
    property real maximumHeight: 240

    height: flick.height + 2 * Theme.unit
    radius: Theme.codeRadius
    color: Theme.tinted(Theme.secondary, 9)

    Flickable {
        id: flick

        x: Theme.unit
        y: Theme.unit
        width: root.width - 2 * Theme.unit
        height: Math.min(words.height, root.maximumHeight)
        contentWidth: Math.max(width, words.width)
        contentHeight: words.height
        clip: true
        interactive: contentHeight > height || contentWidth > width
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}
        ScrollBar.horizontal: ScrollBar {}

        TextEdit {
            id: words

            width: wrapMode === TextEdit.NoWrap ? Math.max(implicitWidth, flick.width) : flick.width
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            readOnly: true
            selectByMouse: hover.hovered
            activeFocusOnPress: hover.hovered
            font: Theme.codeCaption
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentText
            Accessible.role: Accessible.StaticText
            Accessible.name: getText(0, length)
            onActiveFocusChanged: if (!activeFocus)
                deselect()

            HoverHandler {
                id: hover

                acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
                cursorShape: Qt.IBeamCursor
            }
        }
    }
}
