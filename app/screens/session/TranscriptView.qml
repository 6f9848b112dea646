// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: a ListView of Qt 6.4 silently drops a bound header or footer.
import QtQuick
import QtQuick.Controls
import Qt.labs.qmlmodels
import Varnel.Ui
import Varnel.Screens

/// The rows of a conversation under what the agent plans and waits for. It stays at its end while the reader does;
/// whoever scrolled up is left alone. It goes where the state asks it to.
ListView {
    id: root

    required property SessionViewState session
    readonly property TranscriptState transcript: session.transcript
    readonly property real side: Math.max(Theme.margin, (width - Theme.contentWidth) / 2)
    readonly property SessionHeader shownHeader: headerItem as SessionHeader
    /// A request waits for an answer where nobody sees it.
    readonly property bool requestsOutOfView: shownHeader !== null && shownHeader.cardsOutOfView(contentY - shownHeader.y, height)
    property bool atEnd: true
    /// Where the header is to stay in the view while it changes its height: the list would keep the rows in place.
    property real headerPlace: NaN
    property int goal: -1
    property int goalMode: ListView.Beginning

    /// Exactly there, whatever heights were only guessed before.
    function place(row: int, mode: int): void {
        if (row === count - 1 && mode === ListView.End)
            positionViewAtEnd();
        else
            positionViewAtIndex(row, mode);
    }
    function go(row: int, mode: int, animated: bool): void {
        glide.stop();
        forceLayout();
        const from = contentY;
        place(row, mode);
        if (animated && !Theme.reducedMotion) {
            const to = contentY;
            contentY = from;
            goal = row;
            goalMode = mode;
            atEnd = false;
            glide.to = to;
            glide.start();
        } else {
            atEnd = atYEnd;
        }
    }
    function goToRequests(): void {
        glide.stop();
        atEnd = false;
        positionViewAtBeginning();
        contentY = shownHeader.y + Math.max(0, shownHeader.firstCardTop() - Theme.unit);
        returnToBounds();
    }
    function goToEnd(): void {
        go(count - 1, ListView.End, true);
    }
    function holdHeader(): void {
        atEnd = false;
        headerPlace = shownHeader.y - contentY;
    }
    function keepPlace(): void {
        if (!isNaN(headerPlace)) {
            contentY = shownHeader.y - headerPlace;
            headerPlace = NaN;
            returnToBounds();
            atEnd = atYEnd;
        }
        keepEnd();
    }
    function keepEnd(): void {
        if (atEnd && !moving && !dragging && !glide.running && !transcript.jumping)
            positionViewAtEnd();
        noteLastVisible();
    }
    function noteLastVisible(): void {
        const bottom = contentY + height - 1;
        let row = indexAt(width / 2, bottom);
        if (row < 0)
            row = indexAt(width / 2, bottom - spacing);
        transcript.lastVisibleRow = row < 0 && atYEnd ? count - 1 : row;
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
    clip: true
    spacing: Theme.unit
    activeFocusOnTab: true
    keyNavigationEnabled: false
    currentIndex: -1
    boundsBehavior: Flickable.StopAtBounds
    cacheBuffer: 800
    model: root.transcript.rows
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Transcript")
    // Not while a finger or its swing moves it.
    onMovementStarted: {
        glide.stop();
        atEnd = false;
    }
    onMovementEnded: atEnd = atYEnd
    onContentYChanged: noteLastVisible()
    onContentHeightChanged: settle.restart()
    // Positioning replaces estimated heights by real ones, which moves the origin and with it the end.
    onOriginYChanged: settle.restart()
    onHeightChanged: settle.restart()
    onCountChanged: settle.restart()
    Keys.onPressed: event => event.accepted = readBy(event.key)

    // qmllint disable unqualified
    header: SessionHeader {
        x: root.side
        width: root.width - 2 * root.side
        session: root.session
        viewTop: root.contentY - y
        onAboutToUnfold: root.holdHeader()
    }
    footer: Item {
        width: 1
        height: Theme.margin
    }
    delegate: DelegateChooser {
        role: "kind"

        DelegateChoice {
            roleValue: "message"
            TranscriptMessage {
                x: root.side
                width: root.width - 2 * root.side
                onLinkActivated: address => root.session.askLink(address)
                onCopyRequested: text => root.session.copyText(text)
                onUseAgainRequested: again => root.session.useAgain(again)
            }
        }
        DelegateChoice {
            roleValue: "tools"
            ToolActivityGroup {
                x: root.side
                width: root.width - 2 * root.side
                onToggled: id => {
                    root.atEnd = false;
                    root.transcript.toggleGroup(id);
                }
            }
        }
    }
    // qmllint enable unqualified
    ScrollBar.vertical: ScrollBar {
        onPressedChanged: if (!pressed)
            root.atEnd = root.atYEnd
    }

    Connections {
        target: root.transcript
        function onScrollRequested(row: int, alignment: int, animated: bool): void {
            root.go(row, [ListView.Beginning, ListView.Center, ListView.End][alignment], animated);
        }
    }
    NumberAnimation {
        id: glide

        target: root
        property: "contentY"
        duration: 250
        easing.type: Easing.OutQuad
        onFinished: {
            root.place(root.goal, root.goalMode);
            root.atEnd = root.atYEnd;
        }
    }
    // Both wait for the turn of the event loop in which the list has taken in what changed.
    Timer {
        id: settle

        interval: 0
        onTriggered: root.keepPlace()
    }
    Timer {
        id: noteEnd

        interval: 0
        onTriggered: root.atEnd = root.atYEnd
    }
    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        blocking: false
        onWheel: noteEnd.restart()
    }
}
