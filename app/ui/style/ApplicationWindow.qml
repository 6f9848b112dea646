// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

T.ApplicationWindow {
    color: Theme.page
    font: Theme.body
    palette {
        window: Theme.page
        windowText: Theme.text
        base: Theme.surface
        text: Theme.text
        button: Theme.surface
        buttonText: Theme.accent
        highlight: Theme.accent
        highlightedText: Theme.accentText
        placeholderText: Theme.secondary
        mid: Theme.hairline
        dark: Theme.secondary
        light: Theme.surface
    }
}
