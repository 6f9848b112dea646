// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// The connection, the live activity, the pairing, this build, and what can be set.
FocusScope {
    id: root

    required property SettingsViewState settings

    TitleBar {
        id: bar

        width: parent.width
        title: qsTr("Settings")
    }
    FormPage {
        anchors.fill: parent
        anchors.topMargin: bar.height
        focus: true

        FormSection {
            width: parent.width
            title: qsTr("Connection")

            FormRow {
                label: qsTr("Host")
                value: root.settings.host
            }
            FormRow {
                label: qsTr("Status")
                value: root.settings.status
            }
            FormRow {
                visible: root.settings.lastContact.length > 0
                label: qsTr("Last contact")
                value: root.settings.lastContact
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("Live Activity")

            FormRow {
                label: qsTr("Allowed")
                value: root.settings.activitiesAllowed
            }
            FormRow {
                label: qsTr("Delivery")
                value: qsTr("Foreground prototype")
            }
            FormNote {
                text: qsTr("With free signing, the latest state remains visible after locking but new updates wait until the app reconnects.")
            }
            FormButton {
                tone: Theme.red
                text: qsTr("Clear Live Activity")
                onClicked: root.settings.clearActivity()
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("Pairing")

            FormButton {
                tone: Theme.red
                text: qsTr("Forget this host")
                onClicked: root.settings.forgetHost()
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("Compatibility")

            FormRow {
                label: qsTr("Codex CLI contract")
                value: "0.149.1"
            }
            FormRow {
                label: qsTr("Phone API")
                value: "v1"
            }
            FormNote {
                visible: root.settings.bridgeContract.length > 0
                text: root.settings.bridgeContract
                symbol: "exclamationmark.triangle.fill"
                tone: Theme.red
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("Notifications")

            SwitchRow {
                text: qsTr("Codex needs input")
                on: root.settings.notifyNeedsInput
                onTurned: on => root.settings.notifyNeedsInput = on
            }
            SwitchRow {
                text: qsTr("A conversation failed")
                on: root.settings.notifyFailed
                onTurned: on => root.settings.notifyFailed = on
            }
            SwitchRow {
                text: qsTr("A conversation is done")
                on: root.settings.notifyDone
                onTurned: on => root.settings.notifyDone = on
            }
            SwitchRow {
                text: qsTr("The token limit resets")
                on: root.settings.notifyUsageReset
                onTurned: on => root.settings.notifyUsageReset = on
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("Application")

            PickerRow {
                text: qsTr("Appearance")
                choices: root.settings.appearances
                currentIndex: root.settings.appearance
                onPicked: index => root.settings.appearance = index
            }
            PickerRow {
                text: qsTr("Language")
                choices: root.settings.languages
                currentIndex: root.settings.language
                onPicked: index => root.settings.language = index
            }
            SwitchRow {
                text: qsTr("Keep running when the window closes")
                on: root.settings.keepRunning
                onTurned: on => root.settings.keepRunning = on
            }
            FormButton {
                text: qsTr("Quit Varnel")
                onClicked: root.settings.quit()
            }
        }
    }
}
