// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Varnel.Ui

/// What is wider than the page moves sideways in it, with a bar that shows that there is more.
Flickable {
    id: root

    readonly property bool scrolls: contentWidth > width + 1

    height: contentHeight + (scrolls ? Theme.unit : 0)
    clip: scrolls
    interactive: scrolls
    flickableDirection: Flickable.HorizontalFlick
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.horizontal: ScrollBar {
        policy: root.scrolls ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
        contentItem: Rectangle {
            implicitHeight: Theme.half
            radius: 2
            color: Theme.tinted(Theme.secondary, 45)
        }
    }
}
