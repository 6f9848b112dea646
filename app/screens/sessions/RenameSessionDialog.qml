// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// Asks for a conversation's new name.
Dialog {
    id: root

    required property SessionActions actions

    title: qsTr("Rename conversation")
    onOpened: {
        field.selectAll();
        field.forceActiveFocus(Qt.TabFocusReason);
    }
    onRejected: actions.cancelRename()

    TextField {
        id: field

        width: parent.width
        implicitWidth: 320
        placeholderText: qsTr("Name")
        onAccepted: root.actions.saveRename(text)
    }
    // qmllint disable deferred-property-id
    footer: Item {
        implicitHeight: saveButton.height + 20

        Row {
            anchors.right: parent.right
            anchors.rightMargin: 20
            spacing: Theme.unit

            Button {
                text: qsTr("Cancel")
                onClicked: root.actions.cancelRename()
            }
            Button {
                id: saveButton

                highlighted: true
                text: qsTr("Save")
                onClicked: root.actions.saveRename(field.text)
            }
        }
    }
    // qmllint enable deferred-property-id
    Connections {
        target: root.actions
        function onRenameChanged(): void {
            if (root.actions.renaming)
                field.text = root.actions.renameText;
            root.visible = root.actions.renaming;
        }
    }
}
