// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T

/// The scrolling column of sections that a form is; it follows the focus.
Flickable {
    id: root

    default property alias sections: column.data

    function reveal(item: Item): void {
        for (let each = item; each; each = each.parent) {
            if (each !== column)
                continue;
            const place = item.mapToItem(column, 0, 0, item.width, item.height);
            const top = Math.max(0, place.y + column.y - Theme.margin);
            const bottom = place.y + column.y + place.height + Theme.margin;
            if (top < contentY)
                contentY = top;
            else if (bottom > contentY + height)
                contentY = Math.min(top, bottom - height);
            return;
        }
    }

    contentWidth: width
    contentHeight: column.height + 2 * Theme.margin
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    T.ScrollBar.vertical: FadingScrollBar {}

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged(): void {
            const item = root.Window.window.activeFocusItem;
            if (item)
                root.reveal(item);
        }
    }
    Column {
        id: column

        x: (parent.width - width) / 2
        y: Theme.margin
        width: Math.min(Theme.contentWidth, root.width - 2 * Theme.margin)
        spacing: 24
    }
}
