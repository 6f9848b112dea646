// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

Dialog {
    id: root

    required property SessionViewState session

    title: qsTr("Rename conversation")
    visible: session.showingRename
    onRejected: session.cancelRename()
    onOpened: {
        field.forceActiveFocus();
        field.selectAll();
    }

    TextField {
        id: field

        width: parent.width
        placeholderText: qsTr("Name")
        text: root.session.renameText
        onTextChanged: root.session.renameText = text
        onAccepted: root.session.saveName()
    }
    footer: Item {
        implicitHeight: saveButton.height + 20

        Row {
            anchors.right: parent.right
            anchors.rightMargin: 20
            spacing: Theme.unit

            Button {
                flat: true
                text: qsTr("Cancel")
                onClicked: root.session.cancelRename()
            }
            Button {
                id: saveButton

                highlighted: true
                text: qsTr("Save")
                enabled: root.session.renameEnabled
                onClicked: {
                    InputMethod.commit();
                    root.session.saveName();
                }
            }
        }
    }
}
