// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import Varnel.Ui

Item {
    id: root

    required property string html
    required property string plain

    signal linkActivated(string address)

    height: words.height

    Rectangle {
        width: 3
        height: root.height
        radius: 1.5
        color: Theme.tinted(Theme.secondary, 45)
    }
    RichText {
        id: words

        x: 12
        width: root.width - x
        html: root.html
        plain: root.plain
        color: Theme.secondary
        onLinkActivated: link => root.linkActivated(link)
    }
}
