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

        /// Stays while the alert fades, when the error is dismissed already.
        property string message

        objectName: "alert"
        title: qsTr("Varnel")
        // At once, so that an error that comes while the alert fades is one of its own.
        onAccepted: root.shell.dismissError()
        onRejected: root.shell.dismissError()

        Flickable {
            id: reading

            function scrollBy(distance: real): void {
                contentY = Math.max(0, Math.min(contentY + distance, contentHeight - height));
            }

            anchors.fill: parent
            implicitHeight: alertText.height
            contentWidth: width
            contentHeight: alertText.height
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}

            Label {
                id: alertText

                width: reading.width
                text: alert.message
                lineHeight: Theme.readingLeading
            }
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
                Keys.onUpPressed: reading.scrollBy(-Theme.touchTarget)
                Keys.onDownPressed: reading.scrollBy(Theme.touchTarget)
                onClicked: alert.accept()
            }
        }
    }
    Connections {
        target: root.shell
        function onErrorChanged(): void {
            if (root.shell.hasError)
                alert.message = root.shell.errorText;
            alert.visible = root.shell.hasError;
        }
    }
}
