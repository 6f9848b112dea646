// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Varnel.Ui

T.Label {
    textFormat: Text.PlainText
    font: Theme.body
    color: Theme.text
    linkColor: Theme.accent
    wrapMode: Text.Wrap
    Accessible.name: text
}
