// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// What goes with the next message, a capsule each, and what is still on its way to the bridge.
Flow {
    id: root

    required property ComposerState composer

    visible: capsules.count > 0 || composer.uploading
    spacing: Theme.half

    Repeater {
        id: capsules

        model: root.composer.attachments

        Rectangle {
            id: capsule

            required property string id
            required property string symbol
            required property string name
            required property string size

            width: Math.min(root.width, mark.width + words.implicitWidth + removeButton.width + 3 * Theme.unit)
            height: 36
            radius: height / 2
            color: Theme.tinted(Theme.accent, 10)
            Accessible.role: Accessible.Grouping
            Accessible.name: name + ", " + size

            SymbolText {
                id: mark

                x: Theme.cardPadding
                anchors.verticalCenter: parent.verticalCenter
                symbol: capsule.symbol
                size: 20
                color: Theme.accent
            }
            Text {
                id: words

                anchors.left: mark.right
                anchors.leftMargin: Theme.half
                anchors.right: removeButton.left
                anchors.verticalCenter: parent.verticalCenter
                text: capsule.name + " · " + capsule.size
                textFormat: Text.PlainText
                font: Theme.footnote
                color: Theme.text
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            QuietButton {
                id: removeButton

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                symbol: "xmark"
                label: qsTr("Remove %1").arg(capsule.name)
                onClicked: root.composer.removeAttachment(capsule.id)
            }
        }
    }
    Row {
        visible: root.composer.uploading
        height: 36
        leftPadding: Theme.unit
        spacing: Theme.unit

        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            running: root.composer.uploading
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Uploading")
            font: Theme.footnote
            wrapMode: Text.NoWrap
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: root.composer.uploadProgress
            font: Theme.footnote
            color: Theme.secondary
            wrapMode: Text.NoWrap
            Accessible.ignored: text.length === 0
        }
    }
}
