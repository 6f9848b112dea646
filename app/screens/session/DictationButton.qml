// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Varnel.Ui
import Varnel.Screens

/// Dictates. A long press, or the menu key, offers the languages.
SymbolButton {
    id: root

    required property DictationState dictation

    symbol: dictation.symbol
    label: dictation.label
    tone: dictation.recording ? Theme.red : Theme.secondary
    busy: dictation.transcribing
    onClicked: dictation.toggle()
    onPressAndHold: languages.popup(root, root.width - languages.width, -languages.height)
    Keys.onMenuPressed: languages.popup(root, root.width - languages.width, -languages.height)

    ChoiceMenu {
        id: languages

        title: qsTr("Dictation language")

        Repeater {
            model: root.dictation.languages

            ChoiceItem {
                required property var modelData
                required property int index

                text: modelData.label
                symbol: modelData.symbol
                onTriggered: root.dictation.chooseLanguage(index)
            }
        }
    }
}
