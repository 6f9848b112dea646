// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// Shows where a link leads before anything is opened.
Dialog {
    id: root

    required property SessionViewState session

    title: session.linkOpens ? qsTr("Open this link?") : qsTr("Link")
    visible: session.linkAddress.length > 0
    onRejected: session.dismissLink()

    Flickable {
        id: reading

        anchors.fill: parent
        implicitHeight: address.height
        contentWidth: width
        contentHeight: address.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}

        Label {
            id: address

            width: reading.width
            text: root.session.linkAddress
            font: Theme.code
            wrapMode: Text.WrapAnywhere
        }
    }
    footer: Item {
        implicitHeight: buttons.height + 20

        Flow {
            id: buttons

            x: 20
            width: parent.width - 40
            layoutDirection: Qt.RightToLeft
            spacing: Theme.unit

            Button {
                visible: root.session.linkOpens
                highlighted: true
                text: qsTr("Open")
                onClicked: root.session.openLink()
            }
            Button {
                text: qsTr("Copy")
                onClicked: root.session.copyLink()
            }
            Button {
                flat: true
                text: qsTr("Cancel")
                onClicked: root.session.dismissLink()
            }
        }
    }
}
