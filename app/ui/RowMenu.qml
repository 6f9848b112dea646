// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls

/// The actions of a row as a menu, for the pointer, the keyboard and a long press.
Menu {
    id: root

    property SwipeRow row: null
    property var actions: []

    function showFor(target: SwipeRow): void {
        row = target;
        const all = [];
        for (let i = 0; i < target.leading.length; ++i)
            all.push(target.leading[i]);
        for (let i = 0; i < target.trailing.length; ++i)
            all.push(target.trailing[i]);
        actions = all;
        popup(target, Math.max(0, Math.min(target.width - width, target.width / 2)), Math.min(target.height, Theme.touchTarget));
    }

    Repeater {
        model: root.actions

        MenuItem {
            required property SwipeAction modelData

            action: modelData
        }
    }
}
