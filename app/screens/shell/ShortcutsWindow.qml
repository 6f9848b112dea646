// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

/// What the keyboard can do.
Sheet {
    id: root

    readonly property var shortcuts: [
        [qsTr("Go to conversation"), "Ctrl+K"],
        [qsTr("New session"), "Ctrl+N"],
        [qsTr("Search"), "Ctrl+F"],
        [qsTr("Previous conversation"), "Alt+↑"],
        [qsTr("Next conversation"), "Alt+↓"],
        [qsTr("Next conversation that needs input"), "Alt+A"],
        [qsTr("Newest message"), "Ctrl+End"],
        [qsTr("Send message"), qsTr("Ctrl+Enter")],
        [qsTr("Stop current task"), "Ctrl+."],
        [qsTr("Back"), qsTr("Esc")],
        [qsTr("Refresh"), "F5"],
        [qsTr("Settings"), "Ctrl+,"],
        [qsTr("Actions of a row"), qsTr("Menu")],
        [qsTr("This list"), "Ctrl+?"],
        [qsTr("Quit Varnel"), "Ctrl+Q"]
    ]

    title: qsTr("Keyboard shortcuts")
    doneText: qsTr("Done")

    Flickable {
        anchors.fill: parent
        implicitHeight: section.height
        contentHeight: section.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: FadingScrollBar {}

        FormSection {
            id: section

            width: parent.width

            Repeater {
                model: root.shortcuts

                FormRow {
                    required property var modelData

                    label: modelData[0]
                    value: modelData[1]
                }
            }
        }
    }
}
