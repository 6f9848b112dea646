// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: a ListView of Qt 6.4 silently drops a bound header or footer.
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// One conversation. It opens at its end and stays there while the reader does; whoever scrolled up is left alone.
FocusScope {
    id: root

    required property SessionViewState session
    property bool canGoBack: false

    signal backRequested

    TitleBar {
        id: bar

        width: parent.width
        title: root.session.title
        canGoBack: root.canGoBack
        onBackRequested: root.backRequested()

        Spinner {
            width: Theme.touchTarget
            visible: root.session.working
            running: visible
            Accessible.role: Accessible.Animation
            Accessible.name: qsTr("Codex is working")
        }
    }
    // Above the transcript and not in it, so that it is seen wherever the reader stands.
    Flickable {
        id: waiting

        anchors.top: bar.bottom
        width: parent.width
        height: noticeRepeater.count > 0 ? Math.min(noticeColumn.height, parent.height * 0.4) : 0
        contentWidth: width
        contentHeight: noticeColumn.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: noticeColumn

            x: list.side
            width: parent.width - 2 * list.side
            topPadding: Theme.margin
            bottomPadding: Theme.unit
            spacing: Theme.unit

            Repeater {
                id: noticeRepeater

                model: root.session.notices

                // qmllint disable unqualified
                RequestNotice {
                    width: noticeColumn.width
                }
                // qmllint enable unqualified
            }
        }
    }
    ListView {
        id: list

        readonly property real side: Math.max(Theme.margin, (width - Theme.contentWidth) / 2)
        property bool atEnd: true

        function keepEnd(): void {
            if (atEnd && !moving && !dragging)
                positionViewAtEnd();
        }
        function scrollBy(distance: real): void {
            contentY = Math.max(originY, Math.min(contentY + distance, originY + contentHeight - height));
            atEnd = atYEnd;
        }
        /// Whether the key is one that moves through the text.
        function readBy(key: int): bool {
            const page = Math.max(Theme.touchTarget, height - Theme.touchTarget);
            const distances = {
                [Qt.Key_Up]: -Theme.touchTarget,
                [Qt.Key_Down]: Theme.touchTarget,
                [Qt.Key_PageUp]: -page,
                [Qt.Key_PageDown]: page
            };
            if (key === Qt.Key_Home) {
                atEnd = false;
                positionViewAtBeginning();
            } else if (key === Qt.Key_End) {
                atEnd = true;
                positionViewAtEnd();
            } else if (distances[key] !== undefined) {
                scrollBy(distances[key]);
            } else {
                return false;
            }
            return true;
        }

        objectName: "transcript"
        anchors.top: waiting.bottom
        anchors.bottom: composer.top
        width: parent.width
        focus: true
        clip: true
        spacing: Theme.unit
        activeFocusOnTab: true
        keyNavigationEnabled: false
        currentIndex: -1
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 800
        model: root.session.rows
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Transcript")
        // Not while a finger or its swing moves it.
        onMovementStarted: atEnd = false
        onMovementEnded: atEnd = atYEnd
        onContentHeightChanged: settle.restart()
        // Positioning replaces estimated heights by real ones, which moves the origin and with it the end.
        onOriginYChanged: settle.restart()
        onHeightChanged: settle.restart()
        onCountChanged: settle.restart()
        Keys.onPressed: event => event.accepted = readBy(event.key)

        header: Item {
            width: 1
            height: Theme.margin
        }
        footer: Item {
            width: 1
            height: Theme.margin
        }
        // qmllint disable unqualified
        delegate: TranscriptDelegate {
            x: list.side
            width: list.width - 2 * list.side
        }
        // qmllint enable unqualified
        ScrollBar.vertical: ScrollBar {
            onPressedChanged: if (!pressed)
                list.atEnd = list.atYEnd
        }
        // Both wait for the turn of the event loop in which the list has taken in what changed.
        Timer {
            id: settle

            interval: 0
            onTriggered: list.keepEnd()
        }
        Timer {
            id: noteEnd

            interval: 0
            onTriggered: list.atEnd = list.atYEnd
        }
        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            blocking: false
            onWheel: noteEnd.restart()
        }
    }
    Spinner {
        anchors.centerIn: parent
        visible: root.session.loading
        size: 32
        Accessible.role: Accessible.Animation
        Accessible.name: qsTr("Loading conversation")
    }
    Composer {
        id: composer

        anchors.bottom: parent.bottom
        width: parent.width
        session: root.session
    }
}
