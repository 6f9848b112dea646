// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
// Not bound: the list in it has a header.
import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import Varnel.Ui
import Varnel.Screens

/// One conversation: what was said, what is waited for, and what is said next.
FocusScope {
    id: root

    required property SessionViewState session
    property bool canGoBack: false

    signal backRequested

    Shortcut {
        sequence: "Ctrl+."
        onActivated: root.session.composer.stop()
    }
    Shortcut {
        sequence: "Ctrl+End"
        onActivated: list.goToEnd()
    }
    Connections {
        target: root.session
        function onDeclined(): void {
            composer.focusField();
        }
        function onLeft(): void {
            root.backRequested();
        }
        function onCopied(): void {
            note.show();
        }
    }

    Connections {
        target: Qt.application
        function onStateChanged(): void {
            root.session.composer.saveDraft();
        }
    }
    // The veils over it are mixed for this ground.
    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    TitleBar {
        id: bar

        width: parent.width
        title: root.session.title
        canGoBack: root.canGoBack
        onBackRequested: root.backRequested()

        Spinner {
            anchors.verticalCenter: parent ? parent.verticalCenter : undefined
            width: visible ? Theme.touchTarget : 0
            visible: root.session.working
            running: visible
            Accessible.role: Accessible.Animation
            Accessible.name: qsTr("Codex is working")
        }
        SymbolButton {
            symbol: root.session.pinSymbol
            label: root.session.pinLabel
            tone: root.session.pinned ? Theme.accent : Theme.secondary
            onClicked: root.session.togglePin()
        }
        SymbolButton {
            id: actionsButton

            symbol: "ellipsis.circle"
            label: qsTr("Conversation actions")
            tone: Theme.secondary
            onClicked: actions.popup(actionsButton, actionsButton.width - actions.width, actionsButton.height)
        }
    }
    TranscriptView {
        id: list

        anchors.top: bar.bottom
        anchors.bottom: bottom.top
        width: parent.width
        focus: true
        session: root.session
    }
    Spinner {
        anchors.centerIn: list
        visible: root.session.transcript.loading
        size: 32
        Accessible.role: Accessible.Animation
        Accessible.name: qsTr("Loading conversation")
    }
    EmptyState {
        anchors.centerIn: list
        width: list.width - 4 * Theme.margin
        visible: list.count === 0 && !root.session.transcript.loading && root.session.requestCount === 0
        symbol: "bubble.left.and.text.bubble.right"
        title: qsTr("No messages yet")
    }
    JumpButton {
        anchors.right: list.right
        anchors.rightMargin: list.side
        anchors.bottom: list.bottom
        anchors.bottomMargin: Theme.unit
        visible: !list.atYEnd && !list.atEnd && list.count > 0
        replies: root.session.transcript.repliesBelow
        onClicked: list.goToEnd()
    }
    CopiedNote {
        id: note

        anchors.horizontalCenter: list.horizontalCenter
        anchors.bottom: list.bottom
        anchors.bottomMargin: Theme.margin
    }
    Column {
        id: bottom

        anchors.bottom: parent.bottom
        width: parent.width

        WaitingBar {
            width: bottom.width
            visible: list.requestsOutOfView
            onClicked: list.goToRequests()
        }
        ArchivedBar {
            width: bottom.width
            visible: root.session.archived
            onUnarchiveRequested: root.session.unarchive()
        }
        Composer {
            id: composer

            width: bottom.width
            visible: !root.session.archived
            session: root.session
            onPickRequested: picker.open()
            onSettingsRequested: settings.open()
        }
    }
    DropArea {
        anchors.fill: parent
        enabled: !root.session.archived
        onEntered: drag => drag.accepted = drag.hasUrls
        onDropped: drop => root.session.composer.attachFiles(drop.urls)
    }
    ChoiceMenu {
        id: actions

        title: qsTr("Conversation actions")

        ChoiceItem {
            text: qsTr("Rename")
            symbol: "pencil"
            onTriggered: root.session.beginRename()
        }
        ChoiceItem {
            text: qsTr("Archive")
            symbol: "archivebox"
            onTriggered: root.session.archive()
        }
        ChoiceItem {
            text: qsTr("Copy resume command")
            symbol: "terminal"
            onTriggered: root.session.copyResumeCommand()
        }
    }
    SettingsMenu {
        id: settings

        x: root.width - width - Theme.unit
        y: bottom.y - height + Theme.half
        settings: root.session.settings
    }
    RenameDialog {
        session: root.session
    }
    LinkDialog {
        session: root.session
    }
    FileDialog {
        id: picker

        title: qsTr("Attach image or video")
        fileMode: FileDialog.OpenFiles
        nameFilters: [qsTr("Images and videos (%1)").arg("*.png *.jpg *.jpeg *.gif *.webp *.heic *.bmp *.mp4 *.mov *.webm *.mkv *.avi"), qsTr("All files (*)")]
        onAccepted: root.session.composer.attachFiles(selectedFiles)
    }
}
