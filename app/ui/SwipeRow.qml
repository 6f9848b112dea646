// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// A row of a list whose actions a swipe bares. The pointer and the keyboard find the same actions in a menu, which
/// `menuRequested` asks for.
T.ItemDelegate {
    id: root

    property list<SwipeAction> leading
    property list<SwipeAction> trailing
    property bool leadingFull: false
    property bool trailingFull: false
    property bool firstRow: false
    property bool lastRow: false
    property bool selected: false
    property real hairlineInset: Theme.cardPadding
    /// How far the row is moved aside.
    property real offset: 0
    readonly property real actionWidth: 88
    readonly property real leadingWidth: leading.length * actionWidth
    readonly property real trailingWidth: trailing.length * actionWidth

    signal menuRequested

    function close(): void {
        offset = 0;
    }

    function settle(): void {
        const outcome = Swipe.outcome(offset, width, leadingWidth, trailingWidth, leadingFull, trailingFull);
        offset = outcome === Swipe.LeadingOpen ? leadingWidth : outcome === Swipe.TrailingOpen ? -trailingWidth : 0;
        if (outcome === Swipe.LeadingFull)
            leading[0].trigger(root);
        else if (outcome === Swipe.TrailingFull)
            trailing[0].trigger(root);
    }

    padding: Theme.cardPadding
    implicitHeight: Math.max(Theme.touchTarget, implicitContentHeight + topPadding + bottomPadding)
    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.selected: selected
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()
    Keys.onMenuPressed: root.menuRequested()
    onPressAndHold: root.menuRequested()

    Behavior on offset {
        enabled: !drag.active && !Theme.reducedMotion
        NumberAnimation {
            duration: Theme.appearDuration
            easing.type: Easing.OutCubic
        }
    }
    background: Item {
        clip: true

        CardSlice {
            x: root.offset
            width: root.width
            height: root.height
            firstRow: root.firstRow
            lastRow: root.lastRow
            selected: root.selected
            pressed: root.down
            hovered: root.hovered
            focused: root.visualFocus
            inset: root.hairlineInset
        }
    }

    // No TapHandler: the press of a right button would reach the row as well and count as a click.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton
        onClicked: root.menuRequested()
    }
    DragHandler {
        id: drag

        /// Where the row was when the finger took it.
        property real taken: 0

        target: null
        yAxis.enabled: false
        onActiveTranslationChanged: if (active)
            root.offset = Swipe.followed(taken + activeTranslation.x, root.leadingWidth, root.trailingWidth, root.leadingFull, root.trailingFull)
        onActiveChanged: {
            if (active)
                taken = root.offset;
            else
                root.settle();
        }
    }
    SwipeTiles {
        visible: root.offset > 0
        width: Math.max(0, root.offset)
        height: root.height
        actions: root.leading
        tileWidth: root.leadingFull ? width : Math.max(root.actionWidth, width / Math.max(1, actions.length))
        onDone: root.close()
    }
    SwipeTiles {
        x: root.width + root.offset
        visible: root.offset < 0
        width: Math.max(0, -root.offset)
        height: root.height
        actions: root.trailing
        tileWidth: Math.max(root.trailingFull ? width : 0, width / Math.max(1, actions.length))
        onDone: root.close()
    }
}
