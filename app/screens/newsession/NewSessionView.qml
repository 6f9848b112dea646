// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Templates as T
import Varnel.Ui
import Varnel.Screens

/// The form that starts a conversation.
FocusScope {
    id: root

    required property NewSessionViewState form

    TitleBar {
        id: bar

        width: parent.width
        title: qsTr("New Session")
    }
    FormPage {
        anchors.fill: parent
        anchors.topMargin: bar.height
        focus: true

        FormSection {
            width: parent.width
            title: qsTr("Workspace")

            PickerRow {
                text: qsTr("Project")
                choices: root.form.projects
                currentIndex: root.form.project
                onPicked: index => root.form.project = index
            }
            FormNote {
                visible: root.form.highRisk
                text: qsTr("This targets /root and can affect the administrator home.")
                symbol: "exclamationmark.triangle.fill"
                tone: Theme.red
            }
            SwitchRow {
                visible: root.form.highRisk
                text: qsTr("I understand the risk")
                on: root.form.acknowledged
                onTurned: on => root.form.acknowledged = on
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("Model")

            SegmentedRow {
                label: qsTr("Mode")
                choices: root.form.modes
                currentIndex: root.form.mode
                onPicked: index => root.form.mode = index
            }
            PickerRow {
                text: qsTr("Model")
                choices: root.form.models
                currentIndex: root.form.model
                onPicked: index => root.form.model = index
            }
            PickerRow {
                visible: root.form.efforts.length > 0
                text: qsTr("Reasoning")
                choices: root.form.efforts
                currentIndex: root.form.effort
                onPicked: index => root.form.effort = index
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("Safety")

            PickerRow {
                text: qsTr("Sandbox")
                choices: root.form.sandboxes
                currentIndex: root.form.sandbox
                onPicked: index => root.form.sandbox = index
            }
            PickerRow {
                text: qsTr("Approvals")
                choices: root.form.approvals
                currentIndex: root.form.approval
                onPicked: index => root.form.approval = index
            }
            FormNote {
                visible: root.form.unsafe
                text: qsTr("This configuration reduces protection for commands started from your phone.")
                symbol: "exclamationmark.shield.fill"
                tone: Theme.red
            }
        }
        FormSection {
            width: parent.width
            title: qsTr("First prompt")

            Flickable {
                id: promptArea

                readonly property real lineHeight: promptMetrics.lineSpacing
                readonly property real frame: promptField.topPadding + promptField.bottomPadding

                width: parent.width
                height: Math.max(4 * lineHeight + frame, Math.min(promptField.implicitHeight, 10 * lineHeight + frame))
                contentHeight: promptField.height
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                T.ScrollBar.vertical: FadingScrollBar {}

                FontMetrics {
                    id: promptMetrics

                    font: Theme.body
                }
                TextArea.flickable: TextArea {
                    id: promptField

                    placeholderText: qsTr("What should Codex do?")
                    Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
                    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
                    onTextChanged: root.form.prompt = text

                    Connections {
                        target: root.form
                        function onPromptChanged(): void {
                            if (promptField.text !== root.form.prompt)
                                promptField.text = root.form.prompt;
                        }
                    }
                }
            }
            FormButton {
                visible: root.form.promptLost
                text: qsTr("Restore prompt")
                onClicked: root.form.restorePrompt()
            }
        }
        Button {
            id: createButton

            width: parent.width
            highlighted: true
            enabled: root.form.createEnabled
            text: root.form.creating ? "" : qsTr("Start Codex session")
            Accessible.name: qsTr("Start Codex session")
            onClicked: root.form.create()

            Spinner {
                anchors.centerIn: parent
                visible: root.form.creating
                color: Theme.accentText
            }
        }
    }
}
