// SPDX-FileCopyrightText: 2026 Varnel contributors
// SPDX-License-Identifier: MIT
import QtQuick

/// The words above a card.
Text {
    leftPadding: Theme.cardPadding
    rightPadding: Theme.cardPadding
    textFormat: Text.PlainText
    font: Theme.captionBold
    color: Theme.secondary
    wrapMode: Text.Wrap
    Accessible.role: Accessible.Heading
    Accessible.name: text
}
