// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

FocusScope {
    id: root

    required property PairingViewState pairing

    TitleBar {
        id: bar

        width: parent.width
        title: qsTr("Varnel")
    }
    Flickable {
        anchors.fill: parent
        anchors.topMargin: bar.height
        contentWidth: width
        contentHeight: Math.max(height, column.height + 2 * 32)
        focus: true
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column

            x: (parent.width - width) / 2
            y: Math.max(32, (parent.height - height) / 2)
            width: Math.min(480, root.width - 2 * 32)
            spacing: 24

            SymbolText {
                anchors.horizontalCenter: parent.horizontalCenter
                symbol: "iphone.and.arrow.forward"
                size: 56
                color: Theme.accent
            }
            Column {
                width: column.width
                spacing: Theme.unit

                Text {
                    width: column.width
                    text: qsTr("Pair with Codex")
                    textFormat: Text.PlainText
                    font: Theme.title2
                    color: Theme.text
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }
                Text {
                    width: column.width
                    text: root.pairing.instructionMarkup
                    textFormat: Text.RichText
                    font: Theme.body
                    color: Theme.secondary
                    lineHeight: Theme.readingLeading
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                    Accessible.role: Accessible.StaticText
                    Accessible.name: root.pairing.instruction
                }
            }
            Button {
                anchors.horizontalCenter: parent.horizontalCenter
                highlighted: true
                focus: true
                enabled: !root.pairing.pairing
                text: qsTr("Scan pairing code")
                onClicked: root.pairing.startScanning()
            }
            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: root.pairing.pairing
                spacing: Theme.unit

                Spinner {
                    anchors.verticalCenter: parent.verticalCenter
                }
                Label {
                    text: qsTr("Pairing…")
                    font: Theme.subheadline
                    color: Theme.secondary
                }
            }
            Label {
                width: column.width
                text: qsTr("Pairing expires after five minutes. The bridge remains private to your tailnet.")
                font: Theme.footnote
                color: Theme.secondary
                lineHeight: Theme.readingLeading
                horizontalAlignment: Text.AlignHCenter
            }
        }
    }

    PairingSheet {
        parent: Overlay.overlay
        pairing: root.pairing
        visible: root.pairing.scanning
    }
}
