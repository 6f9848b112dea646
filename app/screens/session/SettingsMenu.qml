// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// What the turns of the conversation go with.
ChoiceMenu {
    id: root

    required property SessionSettings settings

    title: settings.contextLabel

    ChoiceMenu {
        title: root.settings.modelLabel
        symbol: "cpu"

        Repeater {
            model: root.settings.models

            ChoiceItem {
                required property var modelData

                text: modelData.label
                checkable: true
                autoExclusive: true
                checked: modelData.checked
                onTriggered: root.settings.chooseModel(modelData.id)
            }
        }
    }
    ChoiceMenu {
        title: root.settings.thinkingLabel
        symbol: "brain"

        Repeater {
            model: root.settings.efforts

            ChoiceItem {
                required property var modelData

                text: modelData.label
                checkable: true
                autoExclusive: true
                checked: modelData.checked
                onTriggered: root.settings.chooseEffort(modelData.id)
            }
        }
    }
    ChoiceMenu {
        title: root.settings.modeLabel
        symbol: "switch.2"

        Repeater {
            model: root.settings.modes

            ChoiceItem {
                required property var modelData

                text: modelData.label
                symbol: modelData.symbol
                checkable: true
                autoExclusive: true
                checked: modelData.checked
                onTriggered: root.settings.chooseMode(modelData.id)
            }
        }
    }
    ChoiceItem {
        text: qsTr("Fast")
        symbol: "bolt.fill"
        checkable: true
        checked: root.settings.fastMode
        enabled: root.settings.fastEnabled
        onTriggered: root.settings.fastMode = !root.settings.fastMode
    }
    ChoiceItem {
        visible: root.settings.hasUsage
        height: visible ? implicitHeight : 0
        text: root.settings.tokensText
        enabled: false
        quiet: true
    }
    ChoiceItem {
        visible: root.settings.hasUsage
        height: visible ? implicitHeight : 0
        text: root.settings.usedText
        enabled: false
        quiet: true
    }
    ChoiceItem {
        text: root.settings.contextLabel
        symbol: "gauge.with.dots.needle.33percent"
        enabled: false
        quiet: true
    }
}
