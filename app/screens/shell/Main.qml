// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The window: the pairing screen or the conversations, and the error alert over either.
ApplicationWindow {
    id: root

    required property ShellState shell
    required property Appearance appearance

    width: 390
    height: 844
    minimumWidth: 320
    minimumHeight: 296
    visible: true
    title: qsTr("Varnel")
    onActiveChanged: if (active)
        shell.activated()
    Component.onCompleted: shell.activated()

    Binding {
        target: Theme
        property: "dark"
        value: root.appearance.dark
    }
    Binding {
        target: Theme
        property: "highContrast"
        value: root.appearance.highContrast
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: root.appearance.reducedMotion
    }
    Binding {
        target: Theme
        property: "textScale"
        value: root.appearance.textScale
    }

    FocusScope {
        id: page

        anchors.fill: parent
        focus: true

        // Repeaters of one, as a Loader of Qt 6.4 cannot make a bound component.
        Repeater {
            model: root.shell.paired ? 0 : 1

            PairingView {
                width: page.width
                height: page.height
                focus: true
                pairing: root.shell.pairing
            }
        }
        Repeater {
            model: root.shell.paired ? 1 : 0

            HomeView {
                width: page.width
                height: page.height
                focus: true
                shell: root.shell
            }
        }
    }
    Dialog {
        id: alert

        title: qsTr("Varnel")
        onClosed: root.shell.dismissError()

        Label {
            width: parent.width
            text: root.shell.errorText
            lineHeight: Theme.readingLeading
        }
        footer: Item {
            implicitHeight: okButton.height + 20

            Button {
                id: okButton

                anchors.right: parent.right
                anchors.rightMargin: 20
                highlighted: true
                focus: true
                text: qsTr("OK")
                onClicked: alert.accept()
            }
        }
    }
    Connections {
        target: root.shell
        function onErrorChanged(): void {
            alert.visible = root.shell.hasError;
        }
    }
}
