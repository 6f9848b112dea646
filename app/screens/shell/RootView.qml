// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The window: the pairing screen or the tabs, and the error alert over either.
ApplicationWindow {
    id: root

    required property ShellState shell
    required property Appearance appearance

    width: 390
    height: 844
    minimumWidth: 320
    minimumHeight: 296
    visible: true
    LayoutMirroring.enabled: Qt.application.layoutDirection === Qt.RightToLeft // qmllint disable type
    LayoutMirroring.childrenInherit: true
    title: shell.windowTitle
    onClosing: shell.windowClosed()
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

    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: root.shell.quit()
    }
    FocusScope {
        id: page

        anchors.fill: parent
        focus: true

        // Repeaters of one, as a Loader of Qt 6.4 cannot make a bound component.
        Repeater {
            model: root.shell.tabs ? [] : [root.shell.pairing]

            PairingView {
                required property PairingViewState modelData

                width: page.width
                height: page.height
                focus: true
                pairing: modelData
            }
        }
        Repeater {
            model: root.shell.tabs ? [root.shell.tabs] : []

            MainTabView {
                required property MainTabViewState modelData

                width: page.width
                height: page.height
                focus: true
                tabs: modelData
            }
        }
    }
    MessageDialog {
        id: alert

        objectName: "alert"
        title: qsTr("Varnel")
        // At once, so that an error that comes while the alert fades is one of its own.
        onAccepted: root.shell.dismissError()
        onRejected: root.shell.dismissError()
    }
    Connections {
        target: root.shell
        function onErrorChanged(): void {
            // The text stays while the alert fades.
            if (root.shell.hasError)
                alert.tell(root.shell.errorText);
            else
                alert.close();
        }
        function onRaised(): void {
            root.show();
            root.raise();
            root.requestActivate();
        }
    }
}
