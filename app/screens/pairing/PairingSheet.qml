// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtMultimedia
import Varnel.Ui
import Varnel.Screens

/// Takes the pairing code. Without a camera it says so and offers the clipboard and a field.
Sheet {
    id: root

    required property PairingViewState pairing

    title: qsTr("Scan pairing code")
    onAboutToShow: codeField.clear()
    onOpened: pasteButton.forceActiveFocus(Qt.TabFocusReason)
    onClosed: pairing.stopScanning()

    Flickable {
        anchors.fill: parent
        implicitHeight: column.height
        contentWidth: width
        contentHeight: column.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: column

            width: parent.width
            spacing: Theme.margin

            Rectangle {
                width: column.width
                height: Math.max(notice.height + 2 * 32, root.wide ? 280 : Math.min(width, root.height - 300))
                radius: Theme.cardRadius
                color: Theme.viewfinder

                VideoOutput {
                    id: view

                    anchors.fill: parent
                    fillMode: VideoOutput.PreserveAspectCrop
                    Accessible.ignored: true
                    Component.onCompleted: root.pairing.preview = videoSink
                }
                Column {
                    id: notice

                    anchors.centerIn: parent
                    visible: root.pairing.cameraNotice.length > 0
                    width: parent.width - 2 * 24
                    spacing: Theme.cardPadding

                    SymbolText {
                        anchors.horizontalCenter: parent.horizontalCenter
                        symbol: "qrcode"
                        size: 48
                        color: Theme.viewfinderText
                    }
                    Label {
                        width: parent.width
                        text: root.pairing.cameraNotice
                        font: Theme.subheadline
                        color: Theme.viewfinderText
                        lineHeight: Theme.readingLeading
                        horizontalAlignment: Text.AlignHCenter
                    }
                }
            }
            Button {
                id: pasteButton

                width: column.width
                highlighted: true
                text: qsTr("Paste code")
                onClicked: root.pairing.pasteCode()
            }
            Button {
                width: column.width
                text: qsTr("Open QR image")
                onClicked: imageDialog.open()
            }
            Label {
                width: column.width
                visible: text.length > 0
                text: root.pairing.pasteNotice
                font: Theme.footnote
                color: Theme.orange
                horizontalAlignment: Text.AlignHCenter
            }
            Item {
                width: column.width
                height: codeField.height

                TextField {
                    id: codeField

                    anchors.left: parent.left
                    anchors.right: pairButton.left
                    anchors.rightMargin: Theme.unit
                    echoMode: TextInput.Password
                    inputMethodHints: Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase | Qt.ImhSensitiveData
                    placeholderText: qsTr("Or type the code")
                    Accessible.name: qsTr("Pairing code")
                    onAccepted: root.pairing.useCode(text)
                }
                Button {
                    id: pairButton

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    enabled: codeField.text.length > 0
                    text: qsTr("Pair")
                    onClicked: root.pairing.useCode(codeField.text)
                }
            }
        }
    }

    FileDialog {
        id: imageDialog

        title: qsTr("Open QR image")
        nameFilters: [qsTr("Pictures") + " (*.png *.jpg *.jpeg *.webp *.bmp *.gif *.svg)"]
        onAccepted: root.pairing.openImage(selectedFile)
    }
}
